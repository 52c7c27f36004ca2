// interactWithUser inside a host that already runs Qt: it reuses the host's
// application object and writes the user's choice back into the host's
// buffers.

#include <algorithm>
#include <array>
#include <cstring>

#include <QApplication>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QStackedWidget>
#include <QTest>

#include <gtest/gtest.h>

#include "DialogTestSupport.h"
#include "core/TransformData.h"
#include "plugin/HostInterface.h"
#include "textures/BrickTexture3D.h"
#include "textures/CheckerboardTexture3D.h"

using namespace gritwell;
using dialogtest::hostUpdates;

namespace {

constexpr char kUntouched = static_cast<char>(0xAB);

struct HostBuffers {
    HostBuffers() {
        record.fill(kUntouched);
        TransformData{}.toBytes(transforms.data());
        hostBlock[kHostCallbackWord] = reinterpret_cast<void*>(&dialogtest::recordHostUpdate);
    }
    float interact() {
        return interactWithUser(nullptr, 0.0, record.data(), static_cast<int>(record.size()), transforms.data(),
                                static_cast<int>(transforms.size()), hostBlock.data());
    }
    std::array<char, 256> record;
    std::array<char, 44> transforms;
    std::array<void*, 8> hostBlock{};
};

QWidget* currentPage(QWidget* dialog) { return dialog->findChild<QStackedWidget*>("stackedWidget")->currentWidget(); }

void press(QWidget* dialog, QDialogButtonBox::StandardButton which) {
    QTest::mouseClick(dialog->findChild<QDialogButtonBox*>("buttonBox")->button(which), Qt::LeftButton);
}

}  // namespace

TEST(EntryPoint, OkWritesExactlyTheRecordsSizeAndTheTransforms) {
    QCoreApplication* hostsApplication = QCoreApplication::instance();
    hostUpdates().clear();
    HostBuffers host;
    CheckerboardTexture3D().getDescription(host.record.data());  // 48 bytes, then 0xAB

    dialogtest::whenDialogShown([](QWidget* dialog) {
        auto* list = dialog->findChild<QListWidget*>("generatorList");
        QListWidgetItem* brick = list->findItems("Brick", Qt::MatchExactly).value(0);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(brick).center());
        currentPage(dialog)->findChild<QSlider*>("brickColor")->setValue(42);
        currentPage(dialog)->findChild<QSlider*>("rotX")->setValue(-90);
        press(dialog, QDialogButtonBox::Ok);
    });
    EXPECT_EQ(host.interact(), 1.0f);

    EXPECT_EQ(QCoreApplication::instance(), hostsApplication);
    EXPECT_EQ(DLL2KelmarCallBack, &dialogtest::recordHostUpdate);
    EXPECT_FALSE(appKilled);

    BrickTexture3D expected;
    expected.setBrickColor(0.42f);
    char expectedRecord[256] = {};
    expected.getDescription(expectedRecord);
    EXPECT_EQ(std::memcmp(host.record.data(), expectedRecord, BrickTexture3D::kRecordSize), 0);
    EXPECT_TRUE(std::all_of(host.record.begin() + BrickTexture3D::kRecordSize, host.record.end(),
                            [](char c) { return c == kUntouched; }));
    const TransformData out = TransformData::fromBytes(host.transforms.data());
    EXPECT_EQ(out.xAngle, -0.25f);
    EXPECT_EQ(out.flags, 2);

    // The host saw every change as it happened, ending with the new colour.
    ASSERT_FALSE(hostUpdates().empty());
    EXPECT_EQ(std::memcmp(hostUpdates().back().record.data(), expectedRecord, BrickTexture3D::kRecordSize), 0);
}
