#pragma once

#include <QStringList>
#include <QUrl>
#include <functional>

class QAbstractItemView;
class QWidget;

namespace kelvo {

enum class AlertStyle { Warning = 0, Critical = 2 };

/// A question or message with its buttons in order; the first is the one that goes on.
struct Alert {
    QString messageText;
    QStringList buttons;
    AlertStyle style = AlertStyle::Warning;
    QString informativeText = {};      ///< a line below the message; empty for none
    const QWidget* subject = nullptr;  ///< what the alert is about: it does not cover that where there is room
};

/// A request for one file.
struct OpenPanel {
    QString fileType;                ///< its extension, in either case of letters
    const QAbstractItemView* table;  ///< the file is for what is selected here
    std::function<QString()> title;  ///< tells the present selection
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

    /// Shows a chooser and returns; the rest of the application stays usable. There is one: where it is open for that
    /// file type it is raised and its first completion holds, where it is open for another it is cancelled. `url` is
    /// only meaningful with kModalResponseOK.
    std::function<void(QWidget& window, const OpenPanel& panel, OpenPanelCompletion completion)> beginOpenPanel;
};

/// The real ones.
AppServices desktopServices();

}  // namespace kelvo
