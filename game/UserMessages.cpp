// The program-wide UserMessages and the silent default.
#include "game/UserMessages.h"

namespace velmora {

namespace {

class SilentMessages final : public UserMessages {
  public:
    int Show(const std::u16string&, const std::u16string&, MessageIcon, MessageButtons buttons,
             MessageOwner) override {
        return buttons == MessageButtons::Ok ? kAnswerOk : kAnswerYes;
    }
};

SilentMessages silentMessages;
UserMessages* installed = nullptr;

}  // namespace

void SetUserMessages(UserMessages* messages) {
    installed = messages;
}

UserMessages& GetUserMessages() {
    return installed ? *installed : silentMessages;
}

}  // namespace velmora
