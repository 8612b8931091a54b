// UserMessages: how portable code tells the user something or asks a question.
#pragma once

#include <string>

namespace velmora {

// The window a message belongs to, as the program knows it; portable code only passes it on.
// Null stands for the application's main window.
struct MessageOwnerWindow;
using MessageOwner = MessageOwnerWindow*;

enum class MessageIcon { None, Error, Warning, Question, Stop };
enum class MessageButtons { Ok, YesNo, YesNoCancel };
// Answers, numbered like the Win32 dialog results.
enum MessageAnswer { kAnswerOk = 1, kAnswerCancel = 2, kAnswerYes = 6, kAnswerNo = 7 };

// The application provides one implementation: the Win32 program shows a message box, the
// command-line tool prints to standard error, tests record the calls and answer them.
class UserMessages {
  public:
    virtual ~UserMessages() = default;
    // Shows text with caption and returns the answer (kAnswerOk for a plain message). owner is
    // the window the message belongs to, or null for the application's main window.
    virtual int Show(const std::u16string& text, const std::u16string& caption, MessageIcon icon,
                     MessageButtons buttons, MessageOwner owner) = 0;
};

// Installs the program-wide implementation (null restores the default, which answers every
// message with kAnswerOk, kAnswerYes for questions, and shows nothing).
void SetUserMessages(UserMessages* messages);
UserMessages& GetUserMessages();

// Shows a plain message with an OK button.
inline int ShowMessage(const std::u16string& text, const std::u16string& caption, MessageIcon icon,
                       MessageOwner owner = nullptr) {
    return GetUserMessages().Show(text, caption, icon, MessageButtons::Ok, owner);
}

}  // namespace velmora
