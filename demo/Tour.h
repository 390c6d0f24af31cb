#pragma once

#include <QList>
#include <QString>
#include <QUrl>
#include <functional>
#include <vector>

#include "Driver.h"

namespace kelvo {

class KelvoAppDelegate;
class VirtualHidManager;
class VirtualKr310;

/// The self-driven tour: uses the utility on a virtual pedal as a user would. Main thread.
class Tour {
public:
    struct Places {
        QString pictures;  ///< an existing folder for the pictures and the transcript
        QString wave;      ///< the file to import into a CAB slot
        QString amp;       ///< the file to import into an AMP slot
        QList<QUrl> set;   ///< waves to drop together
    };
    /// Called with the name of each picture while the windows look like it. May serve events.
    using AtPicture = std::function<void(const QString& name)>;

    Tour(KelvoAppDelegate& controller, VirtualHidManager& manager, const VirtualKr310& pedal, Places places,
         AtPicture atPicture);

    /// From the loading window to the alert after the unplug. The last step presses the alert's button.
    std::vector<StepDriver::Step> steps();

private:
    StepDriver::Step loadingAt(int percent);
    std::vector<StepDriver::Step> importSteps();
    std::vector<StepDriver::Step> setSteps();
    std::vector<StepDriver::Step> deleteSteps();
    std::vector<StepDriver::Step> unplugSteps();
    bool changed(const std::string& beginning) const;
    void takePicture(const QString& name);
    void writeTranscript() const;

    KelvoAppDelegate& controller_;
    VirtualHidManager& manager_;
    const VirtualKr310& pedal_;
    Places places_;
    AtPicture atPicture_;
    int pictures_ = 0;
};

}  // namespace kelvo
