// SearchDialog: the "Game search" dialog: players, ECO, result, a position or a material
// balance, searched over the files of the document list with progress and a stop button; the
// games found are offered in the game list.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "game/GameSearch.h"
#include "models/SearchForm.h"
#include "ui/DialogBase.h"

namespace velmora {

class SearchDialog : public DialogBase, private SearchObserver {
  public:
    // paths: the files to search, in the document list's order.
    explicit SearchDialog(std::vector<std::u16string> paths);
    ~SearchDialog() override;

    // Runs the dialog; 1 when a found game was chosen (ChosenPath and ChosenOffset tell which),
    // otherwise 0.
    INT_PTR Run(HWND parent);

    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

    const std::u16string& ChosenPath() const { return chosenPath_; }
    std::uint32_t ChosenOffset() const { return chosenOffset_; }
    // For tests: whether a search is running, and the results of the last one.
    bool Running() const { return search_ != nullptr; }
    const GameSearchResults* Results() const { return results_.get(); }

  private:
    SearchFormFields ReadFields() const;
    void RunSearch();
    void SetCriteriaEnabled(bool enabled);
    void ShowProgress(bool shown);
    void EditPosition();
    void EditMaterial();
    // Lets the window answer (the stop button above all) while the search runs; at most every
    // few hundredths of a second, so a search does not spend its time in the message queue.
    void PumpMessages();
    void OfferResults();

    // SearchObserver
    void FileStarted(int index, const std::u16string& path, std::int64_t size,
                     platform::ErrorCode error) override;
    void Progress(int fileIndex, std::uint32_t filePosition) override;

    std::vector<std::u16string> paths_;
    std::wstring searchWord_;
    PositionValue position_;
    MaterialWanted material_;
    GameSearch* search_ = nullptr;  // while a search runs
    bool closeAsked_ = false;       // the dialog was closed during a search
    std::uint32_t lastPump_ = 0;
    std::unique_ptr<GameSearchResults> results_;
    std::u16string chosenPath_;
    std::uint32_t chosenOffset_ = 0;
};

}  // namespace velmora
