#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QEventLoop>
#include <QLabel>
#include <QProperty>
#include <QTest>
#include <QTimerEvent>
#include <cmath>
#include <string>
#include <thread>
#include <vector>

#include "LoadDataWindowController.h"
#include "Post.h"
#include "SBProgressBar.h"
#include "ServeEvents.h"

namespace kelvo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LoadDataWindow : public testing::Test {
protected:
    /// The timer's next tick, without its wait.
    void tick() {
        QTimerEvent tick(controller_.timer()->timerId());
        QCoreApplication::sendEvent(controller_.timer(), &tick);
    }
    QString text() const { return controller_.loadDataLabel()->text(); }
    SBProgressBar& bar() const { return *controller_.progressBar(); }
    QWidget& window() const { return *controller_.window(); }

    std::vector<int> exits_;
    LoadDataWindowController controller_{[this](int status) { exits_.push_back(status); }};
};

TEST_F(LoadDataWindow, ticksAtOnceAndThenTwiceASecond) {
    bar().setFloatValue(0.25);
    QCoreApplication::processEvents();
    EXPECT_EQ(text(), "25%");
    EXPECT_EQ(controller_.timer()->interval(), 500);
    EXPECT_EQ(controller_.timer()->timerType(), Qt::PreciseTimer);  // a coarse one may fire early
    bar().setFloatValue(0.75);
    EXPECT_EQ(text(), "25%");
    ASSERT_TRUE(QTest::qWaitFor([this] { return text() == "75%"; }, 20000));
}

TEST_F(LoadDataWindow, percentage_isAnInteger_onlyExactlyOneEnds) {
    const std::pair<double, const char*> rows[] = {
        {0.0, "0%"},
        {0.5, "50%"},
        {0.376, "38%"},
        {0.995, "100%"},
        {198.0 / 199.0, "99%"},
        {0.9999999, "100%"},
        {0.99999999999999989, "100%"},
    };
    window().show();
    for (const auto& [value, shown] : rows) {
        bar().setFloatValue(value);
        tick();
        EXPECT_EQ(text(), shown);
        EXPECT_TRUE(window().isVisible());
        EXPECT_TRUE(controller_.timer()->isActive());
    }
}

TEST_F(LoadDataWindow, atExactlyOne_shows100AndEndsTheModalRun) {
    bar().setFloatValue(199 / 199.0);
    runModalForWindow(window());
    EXPECT_EQ(text(), "100%");
    EXPECT_FALSE(window().isVisible());
    EXPECT_FALSE(controller_.timer()->isActive());
    EXPECT_THAT(exits_, IsEmpty());
}

/// What has been painted last in the window, and what has happened to it.
class Watcher : public QObject {
public:
    explicit Watcher(LoadDataWindowController& controller) : controller_(controller) {
        for (QObject* const watched : std::initializer_list<QObject*>{controller.window(), controller.loadDataLabel(),
                                                                      controller.progressBar()}) {
            watched->installEventFilter(this);
        }
        stopped_ = controller.timer()->bindableActive().addNotifier([this] { events_.push_back("cancelled"); });
    }
    const std::vector<std::string>& events() const { return events_; }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Paint && object == controller_.loadDataLabel()) {
            painted_ = controller_.loadDataLabel()->text().toStdString();
        } else if (event->type() == QEvent::Paint && object == controller_.progressBar()) {
            fill_ = controller_.progressBar()->innerClipLayer().frame().width();
        } else if (event->type() == QEvent::Hide && object == controller_.window()) {
            events_.push_back(painted_ + " over a fill of " + std::to_string(std::lround(fill_)));
        }
        return false;
    }

private:
    LoadDataWindowController& controller_;
    QPropertyNotifier stopped_;
    std::vector<std::string> events_;
    std::string painted_;
    double fill_ = 0.0;
};

TEST_F(LoadDataWindow, beforeItGoes_hasPainted100AndAFullBarAndThenCancelsItsTimer) {
    window().show();
    QCoreApplication::processEvents();
    const Watcher watcher(controller_);
    std::thread([this] { bar().setFloatValue(1.0); }).join();
    // It comes before the main thread's turn to lay out the bar.
    tick();
    EXPECT_THAT(watcher.events(), ElementsAre("100% over a fill of 338", "cancelled"));
}

TEST_F(LoadDataWindow, itsCloseButtonEndsTheProcessWithStatusZeroEachTime) {
    window().show();
    window().close();
    EXPECT_THAT(exits_, ElementsAre(0));
    window().close();
    EXPECT_THAT(exits_, ElementsAre(0, 0));
}

TEST_F(LoadDataWindow, escapeDoesNothing) {
    window().show();
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_TRUE(window().isVisible());
    EXPECT_THAT(exits_, IsEmpty());
}

TEST_F(LoadDataWindow, hasNoMinimiseAndNoMaximiseButtonAndAFixedSize) {
    const Qt::WindowFlags flags = window().windowFlags();
    EXPECT_TRUE(flags & Qt::WindowCloseButtonHint);
    EXPECT_FALSE(flags & Qt::WindowMinimizeButtonHint);
    EXPECT_FALSE(flags & Qt::WindowMaximizeButtonHint);
    EXPECT_EQ(window().minimumSize(), window().maximumSize());
}

TEST(LoadDataPlaceholder, hasNoWindowNoBarAndNoTimer) {
    const LoadDataWindowController placeholder;
    EXPECT_EQ(placeholder.window(), nullptr);
    EXPECT_EQ(placeholder.progressBar(), nullptr);
    EXPECT_EQ(placeholder.loadDataLabel(), nullptr);
    EXPECT_EQ(placeholder.timer(), nullptr);
}

TEST(Post, runsWorkOfAllThreadsOnTheMainThreadInOrder) {
    std::vector<int> order;
    const std::thread::id main = std::this_thread::get_id();
    QEventLoop loop;
    post(qApp, [&] { order.push_back(1); });
    std::thread([&] {
        for (int i = 2; i <= 100; ++i) {
            post(qApp, [&, i] {
                EXPECT_EQ(std::this_thread::get_id(), main);
                order.push_back(i);
            });
        }
        post(qApp, [&] { loop.quit(); });
    }).join();
    EXPECT_THAT(order, IsEmpty());
    loop.exec();
    ASSERT_EQ(order.size(), 100U);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(Post, doesNotRunWorkWhoseContextIsGone) {
    auto context = std::make_unique<QObject>();
    bool hasRun = false;
    post(context.get(), [&] { hasRun = true; });
    context.reset();
    QCoreApplication::processEvents();
    EXPECT_FALSE(hasRun);
}

}  // namespace
}  // namespace kelvo::test
