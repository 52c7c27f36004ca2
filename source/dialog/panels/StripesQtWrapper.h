#pragma once
// StripesQtWrapper: the "Stripes" page. Each control stores its value
// through the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/StripesTexture3D.h"
#include "ui_StripesWidget.h"

namespace gritwell {

class StripesQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit StripesQtWrapper(StripesTexture3D* texture, ImageArea* imageArea, Ui_StripesWidget* ui, QWidget* page,
                              QObject* parent);
    ~StripesQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls. A stored style the
    // list does not hold shows as "Straight", which is how it draws.
    void updateUI() override;
    // Slider tracking of the Stripes sliders.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void styleChanged(int index);  // list position, mapped to the stored style
    void stripeWidthChanged(int value);
    void amplitudeChanged(int value);  // 0..200 for 0..2
    void randomizeColorsToggled(bool on);
    void minColorChanged(int value);  // pushes Maximum up to stay >= Minimum
    void maxColorChanged(int value);  // pulls Minimum down to stay <= Maximum

private:
    Ui_StripesWidget* ui_;
    StripesTexture3D* texture_;
};

}  // namespace gritwell
