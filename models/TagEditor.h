// TagEditor: the tags dialog's list of a game's other tags, changed at once through the game.
#pragma once

#include <string>
#include <vector>

namespace velmora {

class Game;
struct ExtraTag;

class TagEditor {
  public:
    // Rows of the game's extra tags in list order.
    explicit TagEditor(Game& game);

    // What a Set or Del did.
    enum class Change {
        Added,      // a row was appended
        Replaced,   // the value of an existing row changed
        Removed,    // a row was removed
        NoSuchTag,  // Del of a name that has no row
        NoName,     // an empty name
        HeaderTag,  // a name the headers dialog or the program itself writes
    };

    // Sets name to value: the row of that name (any letter case) gets the value, else a new
    // tag is added. The game is marked modified.
    Change Set(const std::u16string& name, const std::u16string& value);
    // Removes the tag of that name (any letter case), if there is one.
    Change Remove(const std::u16string& name);
    // The row of the tag named name in any letter case, or -1.
    int RowOf(const std::u16string& name) const;

    int RowCount() const { return static_cast<int>(rows_.size()); }
    const ExtraTag* Row(int row) const { return rows_[row]; }

  private:
    Game& game_;
    std::vector<ExtraTag*> rows_;
};

// Whether name is one of the tags the program writes itself (the seven headers, SetUp, FEN,
// the correspondence tags), compared in any letter case.
bool IsHeaderTagName(const std::u16string& name);

}  // namespace velmora
