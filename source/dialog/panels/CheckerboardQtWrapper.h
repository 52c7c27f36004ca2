#pragma once
// CheckerboardQtWrapper: the "Checkerboard" page, the one the dialog opens on.

#include "dialog/QtWrapperBase.h"
#include "textures/CheckerboardTexture3D.h"
#include "ui_CheckerboardWidget.h"

namespace gritwell {

class CheckerboardQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit CheckerboardQtWrapper(CheckerboardTexture3D* texture, ImageArea* imageArea, Ui_CheckerboardWidget* ui,
                          QWidget* page, QObject* parent);
    ~CheckerboardQtWrapper() override = default;

    void updateUI() override;
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void depthChanged(int value);
    void randomizeColorsToggled(bool on);
    void variabilityChanged(int value);

private:
    Ui_CheckerboardWidget* ui_;
    CheckerboardTexture3D* texture_;
};

}  // namespace gritwell
