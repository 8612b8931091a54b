// The process-wide values of the program.
#include "shell/Application.h"

namespace velmora {

Application& App() {
    static Application application;
    return application;
}

std::wstring LoadText(int id, const wchar_t* fallback) {
    wchar_t text[512];
    HINSTANCE module =
        App().resourceInstance != nullptr ? App().resourceInstance : GetModuleHandleW(nullptr);
    int length = LoadStringW(module, static_cast<UINT>(id), text, 512);
    return length > 0 ? std::wstring(text, static_cast<size_t>(length)) : std::wstring(fallback);
}

}  // namespace velmora
