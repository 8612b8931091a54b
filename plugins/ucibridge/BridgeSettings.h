// BridgeSettings: which UCI engine program the bridge runs and how, read from its ini file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/bridge/UciBridge.h"

namespace velmora::plugin {

constexpr int kDefaultHandshakeTimeoutMs = 10000;

struct BridgeSettings {
    // The program file: as written in the file, then made absolute by LoadBridgeSettings.
    std::u16string program;
    std::u16string arguments;
    // The UCI options to set, in the file's order.
    std::vector<engine::UciOption> options;
    int handshakeTimeoutMs = kDefaultHandshakeTimeoutMs;
};

// Reads the text of an ini file (8-bit, the system code page): in the section [Engine] (or
// before any section) the keys Program, Arguments and HandshakeTimeout, and in [Options] one
// "Name=Value" line per UCI option; other sections are ignored. Section and key names take any
// case; blanks around names and values go; lines starting with ';' or '#' are comments. Returns
// false without a program.
bool ReadBridgeSettings(std::string_view text, BridgeSettings* settings);

// Reads the ini file at path and makes a relative program path relative to the file's folder.
// Returns false when the file cannot be read or names no program.
bool LoadBridgeSettings(const std::u16string& path, BridgeSettings* settings);

// The folder part of a path, with its separator ('/' or '\'); empty when there is none.
std::u16string FolderOf(const std::u16string& path);

}  // namespace velmora::plugin
