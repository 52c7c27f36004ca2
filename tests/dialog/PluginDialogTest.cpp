// The dialog as the host sees it: GritwellPlugin.so loaded with dlopen into a
// process with no application object of its own, interactWithUser called
// twice. A timer, started from the host's callback once the plug-in's
// application exists, plays the user: OK the first time, Cancel the second.

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <functional>

#include <QApplication>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QSlider>
#include <QStackedWidget>
#include <QTest>

#include <gtest/gtest.h>

#include "DialogTestSupport.h"
#include "PluginLibrary.h"
#include "core/TransformData.h"
#include "dialog/DialogPlacement.h"
#include "textures/BrickTexture3D.h"

using namespace gritwell;

namespace {

constexpr char kUntouched = static_cast<char>(0xCD);

// What the user does in the current call, started once per call from the
// host's first callback.
std::function<void(QWidget*)> userActions;
bool actionsStarted = false;
bool applicationDuringCall = false;

float hostCallback(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d, char* record, char* transforms) {
    applicationDuringCall = qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
    if (!actionsStarted) {
        actionsStarted = true;
        dialogtest::whenDialogShown(userActions);
    }
    return dialogtest::recordHostUpdate(a, b, c, d, record, transforms);
}

QWidget* currentPage(QWidget* dialog) { return dialog->findChild<QStackedWidget*>("stackedWidget")->currentWidget(); }

void press(QWidget* dialog, QDialogButtonBox::StandardButton which) {
    QTest::mouseClick(dialog->findChild<QDialogButtonBox*>("buttonBox")->button(which), Qt::LeftButton);
}

}  // namespace

TEST(PluginDialog, OkThenCancelInOneProcess) {
    // A screen large enough that the centred dialog is not clamped, with no
    // window frames to shift it.
    setenv("QT_QPA_PLATFORM", "offscreen:configfile=" GRITWELL_SOURCE_DIR "/tests/dialog/offscreen-large-screen.json", 1);
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    PluginLibrary plugin(GRITWELL_PLUGIN_PATH);
    ASSERT_TRUE(plugin.ok()) << plugin.error();

    std::array<char, 256> record;
    record.fill(kUntouched);
    record[0] = 0;
    std::array<char, 44> transforms{};
    TransformData{}.toBytes(transforms.data());
    std::array<void*, 8> hostBlock{};
    hostBlock[kHostCallbackWord] = reinterpret_cast<void*>(&hostCallback);
    const auto interact = [&] {
        actionsStarted = false;
        applicationDuringCall = false;
        dialogtest::hostUpdates().clear();
        return plugin.interactWithUser(nullptr, 0.0, record.data(), 256, transforms.data(), 44, hostBlock.data());
    };

    // First call: choose Brick, change it, move the dialog, press OK.
    QPoint firstPosition, expectedPosition, movedTo;
    userActions = [&](QWidget* dialog) {
        firstPosition = dialog->geometry().topLeft();
        expectedPosition = DialogPlacement::centredPosition(QGuiApplication::primaryScreen()->availableGeometry(),
                                                            dialog->geometry());
        auto* list = dialog->findChild<QListWidget*>("generatorList");
        QListWidgetItem* brick = list->findItems("Brick", Qt::MatchExactly).value(0);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(brick).center());
        currentPage(dialog)->findChild<QSlider*>("mortarColor")->setValue(64);
        currentPage(dialog)->findChild<QSlider*>("transX")->setValue(25);
        dialog->move(123, 234);
        movedTo = dialog->geometry().topLeft();
        press(dialog, QDialogButtonBox::Ok);
    };
    EXPECT_EQ(interact(), 1.0f);
    EXPECT_TRUE(applicationDuringCall);
    EXPECT_EQ(QCoreApplication::instance(), nullptr);  // the plug-in's own, gone again
    EXPECT_EQ(firstPosition, expectedPosition);
    EXPECT_GT(firstPosition.x(), 0);
    EXPECT_GT(firstPosition.y(), DialogPlacement::kTopClearance);

    BrickTexture3D brick;
    brick.setMortarColor(0.64f);
    std::array<char, 256> expected{};
    brick.getDescription(expected.data());
    EXPECT_EQ(std::memcmp(record.data(), expected.data(), BrickTexture3D::kRecordSize), 0);
    EXPECT_TRUE(std::all_of(record.begin() + BrickTexture3D::kRecordSize, record.end(),
                            [](char c) { return c == kUntouched; }));
    EXPECT_EQ(TransformData::fromBytes(transforms.data()).xOffset, 0.25f);
    ASSERT_FALSE(dialogtest::hostUpdates().empty());
    EXPECT_EQ(dialogtest::hostUpdates().back().words[1], 8u);

    // Second call, on the record the first one returned: change things, then
    // Cancel. The dialog opens where the user left it.
    const std::array<char, 256> afterOk = record;
    QPoint secondPosition;
    userActions = [&](QWidget* dialog) {
        secondPosition = dialog->geometry().topLeft();
        EXPECT_EQ(currentPage(dialog)->findChild<QSlider*>("mortarColor")->value(), 64);
        EXPECT_EQ(currentPage(dialog)->findChild<QSlider*>("transX")->value(), 25);
        currentPage(dialog)->findChild<QSlider*>("mortarColor")->setValue(5);
        currentPage(dialog)->findChild<QSlider*>("rotY")->setValue(36);
        press(dialog, QDialogButtonBox::Cancel);
    };
    EXPECT_EQ(interact(), 1.0f);
    EXPECT_TRUE(applicationDuringCall);
    EXPECT_EQ(secondPosition, movedTo);
    EXPECT_NE(secondPosition, firstPosition);
    EXPECT_EQ(record, afterOk);
    const TransformData out = TransformData::fromBytes(transforms.data());
    EXPECT_EQ(out.yAngle, 0.1f);
    EXPECT_EQ(out.xOffset, 0.25f);
}
