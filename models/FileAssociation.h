// FileAssociation: whether ".pgn" files open with this program, and making them do so.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/SettingsStore.h"

namespace velmora {

// The question asked when ".pgn" files open with something else, and its caption, for callers
// without the string resources.
inline constexpr char16_t kAssociationQuestion[] =
    u"Velmora is currently not the default PGN viewer ; do you want to register it as the "
    u"default PGN viewer ?";
inline constexpr char16_t kAssociationCaption[] = u"Velmora 2.0";

// The class name ".pgn" points to.
inline constexpr char16_t kPgnFileClass[] = u"pgnfile";

// Returns the default value of "pgnfile\DefaultIcon" for the program at programPath.
std::u16string AssociationIconValue(std::u16string_view programPath);
// Returns the default value of "pgnfile\Shell\Open\Command": the path (quoted when it holds a
// blank) and " %1".
std::u16string AssociationCommandValue(std::u16string_view programPath);

// Tells whether the classes root already holds this association: ".pgn" names "pgnfile", whose
// icon and open command equal the given values, all compared without regard to case. Each value
// is read into a 270-byte buffer, so a longer one never matches.
bool IsAssociated(platform::SettingsStore& store, const std::u16string& iconValue,
                  const std::u16string& commandValue);

// Asks the user whether to register the program for ".pgn" files; returns kAnswerYes or kAnswerNo.
using AssociationQuestion = std::function<int()>;

// Unless checkAssoc is 0, makes ".pgn" files open with programPath: when the store does not
// already say so, asks, and unless the answer is kAnswerNo writes the association. Failed
// writes are ignored. Without a program path or a question nothing is asked or written.
void CheckAssociation(platform::SettingsStore& store, std::uint32_t checkAssoc,
                      const std::u16string& programPath, const AssociationQuestion& ask);

}  // namespace velmora
