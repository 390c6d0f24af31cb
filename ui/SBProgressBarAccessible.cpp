#include "SBProgressBarAccessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <cmath>

#include "SBProgressBar.h"

namespace kelvo {
namespace {

class BarInterface : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit BarInterface(SBProgressBar& bar) : QAccessibleWidget(&bar, QAccessible::ProgressBar), bar_(bar) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? QString::asprintf("%d%%", progressPercent(bar_.floatValue()))
                                          : QAccessibleWidget::text(kind);
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        return state;
    }

    QVariant currentValue() const override { return progressPercent(bar_.floatValue()); }
    // Only the program sets the value.
    void setCurrentValue(const QVariant&) override {}
    QVariant maximumValue() const override { return 100; }
    QVariant minimumValue() const override { return 0; }
    QVariant minimumStepSize() const override { return 1; }

private:
    SBProgressBar& bar_;
};

QAccessibleInterface* makeBarInterface(const QString&, QObject* object) {
    auto* const bar = dynamic_cast<SBProgressBar*>(object);
    return bar ? new BarInterface(*bar) : nullptr;
}

}  // namespace

void installProgressBarAccessibility() {
    QAccessible::installFactory(makeBarInterface);
}

int progressPercent(double value) {
    return static_cast<int>(std::nearbyint(value * 100.0));
}

}  // namespace kelvo
