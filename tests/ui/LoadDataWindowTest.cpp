#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QEventLoop>
#include <QLabel>
#include <QProperty>
#include <QTest>
#include <QTimerEvent>
#include <cmath>
#include <functional>
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

/// Calls a function with each event of the objects that it is installed on.
class Watcher : public QObject {
public:
    explicit Watcher(std::function<void(QObject*, QEvent::Type)> note) : note_(std::move(note)) {}

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        note_(object, event->type());
        return false;
    }

private:
    std::function<void(QObject*, QEvent::Type)> note_;
};

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

TEST_F(LoadDataWindow, percentage_isAnInteger_onlyExactlyOneEndsTheModalRun) {
    QTimer::singleShot(0, &window(), [this] {
        for (const auto& [value, shown] : {std::pair{0.0, "0%"},
                                           {0.376, "38%"},
                                           {198.0 / 199.0, "99%"},
                                           {0.995, "100%"},
                                           {0.99999999999999989, "100%"}}) {
            bar().setFloatValue(value);
            tick();
            EXPECT_EQ(text(), shown);
            EXPECT_TRUE(window().isVisible());
            EXPECT_TRUE(controller_.timer()->isActive());
        }
        bar().setFloatValue(199 / 199.0);
        tick();
    });
    runModalForWindow(window());
    EXPECT_FALSE(window().isVisible());
    EXPECT_FALSE(controller_.timer()->isActive());
    EXPECT_THAT(exits_, IsEmpty());
}

TEST_F(LoadDataWindow, beforeItGoes_hasPainted100AndAFullBarAndThenCancelsItsTimer) {
    std::string painted;
    double fill = 0.0;
    std::vector<std::string> events;
    Watcher watcher([&](QObject* object, QEvent::Type type) {
        if (type == QEvent::Paint && object == controller_.loadDataLabel()) {
            painted = text().toStdString();
        } else if (type == QEvent::Paint && object == &bar()) {
            fill = bar().innerClipLayer().frame().width();
        } else if (type == QEvent::Hide && object == &window()) {
            events.push_back(painted + " over a fill of " + std::to_string(std::lround(fill)));
        }
    });
    window().installEventFilter(&watcher);
    bar().installEventFilter(&watcher);
    controller_.loadDataLabel()->installEventFilter(&watcher);
    window().show();
    QCoreApplication::processEvents();
    const auto stopped = controller_.timer()->bindableActive().addNotifier([&] { events.push_back("cancelled"); });
    // The tick comes before the main thread has laid out the bar.
    std::thread([this] { bar().setFloatValue(1.0); }).join();
    tick();
    EXPECT_THAT(events, ElementsAre("100% over a fill of 338", "cancelled"));
}

TEST_F(LoadDataWindow, onlyItsCloseButtonEndsTheProcess_withStatusZeroEachTime) {
    window().show();
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_TRUE(window().isVisible());
    EXPECT_THAT(exits_, IsEmpty());
    window().close();
    window().close();
    EXPECT_THAT(exits_, ElementsAre(0, 0));
    EXPECT_EQ(window().windowFlags() & (Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint),
              Qt::WindowCloseButtonHint);
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
