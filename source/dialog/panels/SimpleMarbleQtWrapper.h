#pragma once
// SimpleMarbleQtWrapper: the "Simple Marble" page. Each control stores its
// value through the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/SimpleMarbleTexture3D.h"
#include "ui_SimpleMarbleWidget.h"

namespace gritwell {

class SimpleMarbleQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit SimpleMarbleQtWrapper(SimpleMarbleTexture3D* texture, ImageArea* imageArea, Ui_SimpleMarbleWidget* ui,
                                   QWidget* page, QObject* parent);
    ~SimpleMarbleQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Keyboard tracking of the two spin boxes.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void octavesChanged(int value);
    void textureScaleChanged(double value);

private:
    Ui_SimpleMarbleWidget* ui_;
    SimpleMarbleTexture3D* texture_;
};

}  // namespace gritwell
