#pragma once
// DentedQtWrapper: the "Dents" page. The scale and the magnitude of the dents
// go to the texture's setters and then to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/DentedTexture3D.h"
#include "ui_DentedWidget.h"

namespace gritwell {

class DentedQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit DentedQtWrapper(DentedTexture3D* texture, ImageArea* imageArea, Ui_DentedWidget* ui, QWidget* page,
                             QObject* parent);
    ~DentedQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Keyboard tracking of the two spin boxes.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    // Hides the common block's overall-scale slot of the same name; each is
    // connected through its own class.
    void scaleChanged(double value);
    void magnitudeChanged(double value);

private:
    Ui_DentedWidget* ui_;
    DentedTexture3D* texture_;
};

}  // namespace gritwell
