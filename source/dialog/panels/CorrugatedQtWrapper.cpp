#include "dialog/panels/CorrugatedQtWrapper.h"

#include <array>
#include <cstddef>

#include <QSignalBlocker>

#include "ui_CommonWidget.h"

namespace gritwell {

namespace {
// The list reads "Triangle", "Sine", "Ribbon", "Sawtooth", "Perlin Noise";
// records number the same shapes the other way round.
constexpr std::array<CorrugatedTexture3D::Style, 5> kStyleOfItem = {
    CorrugatedTexture3D::Triangle, CorrugatedTexture3D::Sine, CorrugatedTexture3D::Ribbon,
    CorrugatedTexture3D::Sawtooth, CorrugatedTexture3D::PerlinNoise};

// The item showing `style`; -1 (no item) for a style outside the list.
int itemOfStyle(CorrugatedTexture3D::Style style) {
    for (std::size_t i = 0; i < kStyleOfItem.size(); ++i)
        if (kStyleOfItem[i] == style) return static_cast<int>(i);
    return -1;
}
}  // namespace

CorrugatedQtWrapper::CorrugatedQtWrapper(CorrugatedTexture3D* texture, ImageArea* imageArea,
                                         Ui_CorrugatedWidget* ui, QWidget* page, QObject* parent)
    : QtWrapperBase(texture, imageArea, page, parent), ui_(ui), texture_(texture) {
    connect(commonUi_->newInteractiveUpdate, &QPushButton::toggled, this,
            &CorrugatedQtWrapper::interactiveUpdateToggled);
    connect(ui_->style, &QComboBox::currentIndexChanged, this, &CorrugatedQtWrapper::styleChanged);
    describeControls();
}

void CorrugatedQtWrapper::updateUI() {
    {
        // A stored style the list does not offer (it evaluates as a half
        // sine wave) shows as no item and stays in the record.
        const QSignalBlocker b0(ui_->style);
        ui_->style->setCurrentIndex(itemOfStyle(texture_->getStyle()));
    }
    const bool interactive = texture_->interactiveUpdate();
    commonUi_->newInteractiveUpdate->setChecked(interactive);
    setInteractivity(interactive);
}

void CorrugatedQtWrapper::setInteractivity(bool) {}

void CorrugatedQtWrapper::interactiveUpdateToggled(bool on) {
    texture_->setInteractiveUpdate(on);
    setInteractivity(on);
    redraw();
}

void CorrugatedQtWrapper::styleChanged(int index) {
    if (index < 0 || index >= static_cast<int>(kStyleOfItem.size())) return;
    texture_->setStyle(kStyleOfItem[static_cast<std::size_t>(index)]);
    redraw();
}

}  // namespace gritwell
