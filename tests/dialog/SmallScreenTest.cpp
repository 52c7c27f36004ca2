// The dialog on a laptop's screen: opened by the entry point as the host
// opens it, on the page that needs the most height, OK and Cancel lie on the
// screen and the whole page can be scrolled into view. Each screen is a
// platform configuration, so each case builds its own application object:
// the entry point does, as none exists.

#include <array>
#include <cstdlib>
#include <fstream>
#include <string>

#include <QApplication>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTest>

#include <gtest/gtest.h>

#include "DialogTestSupport.h"
#include "core/TransformData.h"
#include "dialog/DialogPlacement.h"
#include "plugin/HostInterface.h"
#include "textures/CheckerboardTexture3D.h"

using namespace gritwell;

namespace {

std::function<void(QWidget*)> userActions;
bool actionsStarted = false;

// The dialog is on its way once it sends its first state.
float startActions(std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d, char* record, char* transforms) {
    if (!actionsStarted) {
        actionsStarted = true;
        dialogtest::whenDialogShown(userActions);
    }
    return dialogtest::recordHostUpdate(a, b, c, d, record, transforms);
}

QRect globalRect(const QWidget* w) { return QRect(w->mapToGlobal(QPoint(0, 0)), w->size()); }

class SmallScreen : public testing::TestWithParam<QSize> {};

}  // namespace

TEST_P(SmallScreen, OkAndCancelStayOnScreenAndTheTallestPageScrolls) {
    const QSize size = GetParam();
    const std::string config = testing::TempDir() + "screen-" + std::to_string(size.width()) + "x" +
                               std::to_string(size.height()) + ".json";
    std::ofstream(config) << R"({"windowFrameMargins": false, "screens": [{"name": "Laptop", "x": 0, "y": 0, "width": )"
                          << size.width() << R"(, "height": )" << size.height()
                          << R"(, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";
    setenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + config).c_str(), 1);
    ASSERT_EQ(QCoreApplication::instance(), nullptr);

    userActions = [](QWidget* dialog) {
        const QRect screen = dialog->screen()->availableGeometry();
        // The page that asks for the most height; pages follow the form's two.
        auto* list = dialog->findChild<QListWidget*>("generatorList");
        auto* stack = dialog->findChild<QStackedWidget*>("stackedWidget");
        const auto pageOf = [stack](int row) { return stack->widget(row + 2); };
        const auto choose = [list](int row) {
            list->scrollToItem(list->item(row));
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
        };
        int tallest = 0, shortest = 0;
        for (int row = 1; row < list->count(); ++row) {
            if (pageOf(row)->sizeHint().height() > pageOf(tallest)->sizeHint().height()) tallest = row;
            if (pageOf(row)->sizeHint().height() < pageOf(shortest)->sizeHint().height()) shortest = row;
        }
        choose(tallest);
        QWidget* page = stack->currentWidget();
        EXPECT_EQ(page, pageOf(tallest));

        // As tall as it may be, centred below the menu bar's clearance.
        EXPECT_TRUE(screen.contains(dialog->frameGeometry())) << list->item(tallest)->text().toStdString();
        EXPECT_GE(dialog->height(), screen.height() - 2 * DialogPlacement::kTopClearance);
        auto* buttons = dialog->findChild<QDialogButtonBox*>("buttonBox");
        for (auto which : {QDialogButtonBox::Ok, QDialogButtonBox::Cancel})
            EXPECT_TRUE(screen.contains(globalRect(buttons->button(which)))) << which;

        // Too tall for the screen, the page scrolls, never sideways, to its last control.
        auto* pages = dialog->findChild<QScrollArea*>("pageScrollArea");
        EXPECT_GT(pages->verticalScrollBar()->maximum(), 0);
        EXPECT_GE(pages->viewport()->width(), pages->widget()->sizeHint().width());
        auto* last = page->findChild<QPushButton*>("newInteractiveUpdate");
        pages->ensureWidgetVisible(last);
        EXPECT_TRUE(globalRect(pages->viewport()).contains(globalRect(last)));

        // A page that fits does not scroll through the room a taller one needs.
        const QSize dialogSize = dialog->size();
        choose(shortest);
        EXPECT_EQ(pages->verticalScrollBar()->maximum(), 0) << list->item(shortest)->text().toStdString();
        EXPECT_EQ(dialog->size(), dialogSize);
        buttons->button(QDialogButtonBox::Cancel)->click();
    };

    std::array<char, 256> record{};
    CheckerboardTexture3D().getDescription(record.data());
    std::array<char, 44> transforms{};
    TransformData{}.toBytes(transforms.data());
    std::array<void*, 8> hostBlock{};
    hostBlock[kHostCallbackWord] = reinterpret_cast<void*>(&startActions);
    actionsStarted = false;
    interactWithUser(nullptr, 0.0, record.data(), 256, transforms.data(), 44, hostBlock.data());
    EXPECT_TRUE(actionsStarted);
}

INSTANTIATE_TEST_SUITE_P(Laptops, SmallScreen, testing::Values(QSize(1280, 720), QSize(1366, 768)),
                         [](const auto& info) {
                             return std::to_string(info.param.width()) + "x" + std::to_string(info.param.height());
                         });
