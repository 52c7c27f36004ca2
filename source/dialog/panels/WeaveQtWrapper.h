#pragma once
// WeaveQtWrapper: the "Weave" page. Each control stores its value through
// the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/WeaveTexture3D.h"
#include "ui_WeaveWidget.h"

namespace gritwell {

class WeaveQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit WeaveQtWrapper(WeaveTexture3D* texture, ImageArea* imageArea, Ui_WeaveWidget* ui, QWidget* page,
                            QObject* parent);
    ~WeaveQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Slider tracking of the Weave controls.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void patternChanged(int index);
    void backgroundColorChanged(int value);
    void horizontalColorChanged(int value);
    void verticalColorChanged(int value);
    void horizontalWidthChanged(int value);
    void verticalWidthChanged(int value);
    void horizontalRandomizeToggled(bool on);
    void horizontalMinColorChanged(int value);  // pushes its Maximum up to stay >= Minimum
    void horizontalMaxColorChanged(int value);  // pulls its Minimum down to stay <= Maximum
    void verticalRandomizeToggled(bool on);
    void verticalMinColorChanged(int value);  // pushes its Maximum up to stay >= Minimum
    // Pulls its Minimum down to stay <= Maximum; the value itself lands in
    // the horizontal threads' maximum (see WeaveTexture3D::setVerticalMaxColor).
    void verticalMaxColorChanged(int value);
    void shadingEnableToggled(bool on);
    void shadingHorizontalStrengthChanged(int value);
    void shadingVerticalStrengthChanged(int value);

private:
    Ui_WeaveWidget* ui_;
    WeaveTexture3D* texture_;
};

}  // namespace gritwell
