#pragma once

#include <gtest/gtest.h>

#include <QPushButton>
#include <QTest>
#include <array>
#include <initializer_list>
#include <string>

#include "AppHarness.h"
#include "SampleFiles.h"
#include "SlotTableView.h"

namespace kelvo::test {

/// A window in use, with files to import. A pedal that is silent from phase 1 leaves its answers to acknowledge().
class FileImports : public testing::Test {
protected:
    explicit FileImports(const Faults& faults = {}) {
        app_.start();
        app_.pedal.setFaults(faults);
        app_.controller.window().activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&app_.controller.window()));
        cab_.setFocus();
    }

    QString wave(const QString& name, std::uint8_t first = 1) const {
        return files_.write(name, WaveFile{.data = {0, first, 0, 2}}.bytes());
    }
    QString amp(const QString& name, std::uint32_t first = 1) const {
        return files_.write(name, ampFile(std::array{first}));
    }
    static QList<QUrl> urls(const QStringList& paths) {
        QList<QUrl> urls;
        for (const QString& path : paths) {
            urls.append(QUrl::fromLocalFile(path));
        }
        return urls;
    }
    QList<QUrl> waves(const QStringList& names) const {
        QStringList paths;
        for (const QString& name : names) {
            paths.append(wave(name + ".wav"));
        }
        return urls(paths);
    }
    QString bad(const QString& name) const { return files_.write(name, FileBytes(100, 'x')); }
    /// Whether the button's description becomes this text.
    bool says(const char* name, const QString& text) const {
        return serveUntil([&] { return button(name).accessibleDescription() == text; });
    }
    static SlotState state(const SlotTableView& table, int row) {
        return table.model()->index(row, 0).data(SlotTableModel::kStateRole).value<SlotState>();
    }
    static std::vector<int> rowsThatAre(SlotState wanted, const SlotTableView& table) {
        std::vector<int> rows;
        for (int row = 0; row < kTableRows; ++row) {
            if (state(table, row) == wanted) {
                rows.push_back(row);
            }
        }
        return rows;
    }
    QPushButton& button(const char* name) const {
        return *app_.controller.window().findChild<QPushButton*>(QLatin1String(name));
    }
    void press(Qt::Key key, Qt::KeyboardModifier modifier = Qt::ControlModifier) {
        cab_.setFocus();
        QTest::keyClick(&cab_, key, modifier);
    }
    bool isIdle() const { return app_.controller.transferState().IRProgress.acknowledged == 4; }
    /// Whether the pedal has finished n changes of its memory in all.
    bool changed(std::size_t n) const {
        return serveUntil([&] { return app_.manager.activity().changes.size() >= n; });
    }
    bool holds(int row, const std::string& name) const {
        return serveUntil([&] { return app_.pedal.memory().cab[static_cast<std::size_t>(row)].name == name; });
    }

    /// Acknowledgements that only the receive thread has handled yet.
    void receive(std::initializer_list<std::uint8_t> phases, std::uint8_t command = 0xE1) {
        for (const std::uint8_t phase : phases) {
            app_.controller.CMD_CallBack(std::array<std::uint8_t, kFrameBufferSize>{0xAA, 0x55, 2, 0, command, phase});
        }
    }
    void acknowledge(std::initializer_list<std::uint8_t> phases, std::uint8_t command = 0xE1) {
        receive(phases, command);
        QCoreApplication::processEvents();
    }
    std::uint64_t transfer() const { return app_.controller.transferState().IRProgress.number; }

    SampleDir files_;
    RunningApp app_;
    SlotTableView& cab_ = app_.controller.ImportIRTableV();
    SlotTableView& amp_ = app_.controller.ImportCabTableV();
};

}  // namespace kelvo::test
