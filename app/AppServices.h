#pragma once

#include <QStringList>
#include <QUrl>
#include <functional>

class QWidget;

namespace kelvo {

enum class AlertStyle { Warning = 0, Critical = 2 };

/// A question or message with its buttons in order; the first is the one that goes on.
struct Alert {
    QString messageText;
    QStringList buttons;
    AlertStyle style = AlertStyle::Warning;
};

/// Answer for the first button of an alert; each later button counts one more.
inline constexpr int kAlertFirstButtonReturn = 1000;
inline constexpr int kAlertSecondButtonReturn = 1001;

/// Answers of a file chooser.
inline constexpr int kModalResponseCancel = 0;
inline constexpr int kModalResponseOK = 1;

/// All that the controller asks of the desktop and the process; a test puts its own functions here.
/// Each is called on the main thread. Completions come on the main thread too, later.
struct AppServices {
    using AlertCompletion = std::function<void(int response)>;
    using OpenPanelCompletion = std::function<void(int response, const QUrl& url)>;

    /// Blocks the calling thread for whole seconds.
    std::function<void(unsigned seconds)> sleep;

    /// Ends the process at once, without clean-up. A test's version returns.
    std::function<void(int status)> exitProcess;

    /// Shows the alert above every other window of the application, even a modal one, and returns.
    std::function<void(QWidget& window, const Alert& alert, AlertCompletion completion)> beginSheetModal;

    /// Shows a chooser for one file with the extension, in either case of letters, and returns. `url` is only
    /// meaningful with kModalResponseOK.
    std::function<void(QWidget& window, const QString& fileType, OpenPanelCompletion completion)> beginOpenPanel;
};

/// The real ones.
AppServices desktopServices();

}  // namespace kelvo
