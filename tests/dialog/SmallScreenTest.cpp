// The dialog on a laptop's screen (1280x720, then 1366x768), opened by the
// entry point as a host built on Qt opens it: on the page that needs the
// most height, OK and Cancel lie on the screen and the whole page can be
// scrolled into view; a page that fits does not scroll. Each screen is a
// platform configuration, so each case makes its own application object.

#include <array>
#include <cstdlib>
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

using namespace gritwell;

namespace {

QRect globalRect(const QWidget* w) { return QRect(w->mapToGlobal(QPoint(0, 0)), w->size()); }

// A screen description for the offscreen platform, beside this file.
class SmallScreen : public testing::TestWithParam<const char*> {};

}  // namespace

TEST_P(SmallScreen, OkAndCancelStayOnScreenAndTheTallestPageScrolls) {
    setenv("QT_QPA_PLATFORM", (std::string("offscreen:configfile=" GRITWELL_SOURCE_DIR "/tests/dialog/") + GetParam()).c_str(), 1);
    int argc = 0;
    QApplication application(argc, nullptr);

    dialogtest::whenDialogShown([](QWidget* dialog) {
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
    });

    // An empty record opens on Checkerboard; no host callback, no updates.
    std::array<char, 256> record{};
    std::array<char, 44> transforms{};
    TransformData{}.toBytes(transforms.data());
    interactWithUser(nullptr, 0.0, record.data(), 256, transforms.data(), 44, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Laptops, SmallScreen, testing::Values("offscreen-1280x720.json", "offscreen-1366x768.json"));
