#pragma once
// PsychedelicQtWrapper: the "Psychedelic" page. Each control stores its value
// through the texture's setter and sends the change to the host.

#include "dialog/QtWrapperBase.h"
#include "textures/PsychedelicTexture3D.h"
#include "ui_PsychedelicWidget.h"

namespace gritwell {

class PsychedelicQtWrapper : public QtWrapperBase {
    Q_OBJECT

public:
    explicit PsychedelicQtWrapper(PsychedelicTexture3D* texture, ImageArea* imageArea, Ui_PsychedelicWidget* ui,
                                  QWidget* page, QObject* parent);
    ~PsychedelicQtWrapper() override = default;

    // Every control from the texture's fields, then the interactive-update
    // button and the tracking of this page's controls.
    void updateUI() override;
    // Slider tracking and spin-box keyboard tracking of the Psychedelic controls.
    void setInteractivity(bool on);

public slots:
    void interactiveUpdateToggled(bool on);
    void frequencyChanged(double value);
    void minColorChanged(int value);  // pushes Maximum up to stay >= Minimum
    void maxColorChanged(int value);  // pulls Minimum down to stay <= Maximum

private:
    Ui_PsychedelicWidget* ui_;
    PsychedelicTexture3D* texture_;
};

}  // namespace gritwell
