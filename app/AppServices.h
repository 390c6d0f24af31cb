#pragma once

#include <QStringList>
#include <QUrl>
#include <functional>

class QAbstractItemView;
class QWidget;

namespace kelvo {

enum class AlertStyle { Warning = 0, Critical = 2 };

/// A question or message with its buttons in order; the first one confirms.
struct Alert {
    QString messageText;
    QStringList buttons;
    AlertStyle style = AlertStyle::Warning;
    QString informativeText = {};      ///< a line below the message; empty for none
    const QWidget* subject = nullptr;  ///< the alert is placed beside it if there is room
};

/// A request for one file.
struct OpenPanel {
    QString fileType;                ///< its extension, in either case of letters
    const QAbstractItemView* table;  ///< the file is for its selected row
    std::function<QString()> title;  ///< names the selected slot
};

/// Answer for the first button of an alert; each later button counts one more.
inline constexpr int kAlertFirstButtonReturn = 1000;
inline constexpr int kAlertSecondButtonReturn = 1001;

/// Answers of a file chooser.
inline constexpr int kModalResponseCancel = 0;
inline constexpr int kModalResponseOK = 1;

/// What the controller needs from the desktop and the process. Tests replace the functions. They are called on the main
/// thread, and completions run there later.
struct AppServices {
    using AlertCompletion = std::function<void(int response)>;
    using OpenPanelCompletion = std::function<void(int response, const QUrl& url)>;

    /// Blocks the calling thread for whole seconds.
    std::function<void(unsigned seconds)> sleep;

    /// Ends the process at once, without clean-up. A test's version returns.
    std::function<void(int status)> exitProcess;

    /// Shows the alert above every other window of the application, even a modal one, and returns.
    std::function<void(QWidget& window, const Alert& alert, AlertCompletion completion)> beginSheetModal;

    /// Shows a chooser and returns; the rest of the application stays usable. There is one chooser. If it is open for
    /// the same file type, it is raised and keeps its first completion; if it is open for the other type, that request
    /// is cancelled. `url` is only meaningful with kModalResponseOK.
    std::function<void(QWidget& window, const OpenPanel& panel, OpenPanelCompletion completion)> beginOpenPanel;
};

/// The real ones.
AppServices desktopServices();

}  // namespace kelvo
