#include <climits>

#include "ulogui/OverflowingTextLog.h"

namespace ulo {

OverflowingTextDialogInfo overflowDialogHelper_;

void OverflowingTextDialogInfo::StartEditDialog(const std::wstring& name) {
    if (&name != &dialogName) {
        dialogName = name;
    }
    count = 0;
}

void OverflowingTextDialogInfo::LogOverflowingText(const ULOString& text) {
    if (logFile) {
        if (count == 0) {
            std::fputws(L"\n\t-> ", logFile);
            std::fputws(dialogName.c_str(), logFile);
            std::fputws(L"\r\n", logFile);
        }
        // A fixed indentation sets the texts apart from the dialog lines above them.
        std::fputws(L"                           ", logFile);
        std::fputws(text.c_str(), logFile);
        std::fputws(L"\r\n", logFile);
    }
    if (count < INT_MAX) {
        ++count;
    }
}

}  // namespace ulo
