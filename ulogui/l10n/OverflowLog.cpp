#include <climits>

#include "platform/LogStream.h"
#include "ulogui/OverflowingTextLog.h"

namespace ulo {

OverflowingTextDialogInfo overflowDialogHelper_;

void OverflowingTextDialogInfo::StartEditDialog(const std::wstring& name) {
    if (&name != &dialogName) {
        dialogName = name;
    }
    count = 0;
}

using ulogui::platform::WriteLogText;

void OverflowingTextDialogInfo::LogOverflowingText(const ULOString& text) {
    if (logFile) {
        if (count == 0) {
            WriteLogText(L"\n\t-> ", logFile);
            WriteLogText(dialogName.c_str(), logFile);
            WriteLogText(L"\r\n", logFile);
        }
        // A fixed indentation sets the texts apart from the dialog lines above them.
        WriteLogText(L"                           ", logFile);
        WriteLogText(text.c_str(), logFile);
        WriteLogText(L"\r\n", logFile);
    }
    if (count < INT_MAX) {
        ++count;
    }
}

}  // namespace ulo
