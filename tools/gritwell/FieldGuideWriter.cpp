// field_guide: writes FieldGuide.inc, the command line's table of what the
// dialog says about each record field: the tool tip of the control that
// edits it and the range that control allows. The dialog's forms and panels
// stay the one source; the command line never links the dialog, so it reads
// this table, and the test command runs `field_guide --check` to keep it
// current.
//
//   build/field_guide > tools/gritwell/FieldGuide.inc
//   build/field_guide --check tools/gritwell/FieldGuide.inc

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QSignalBlocker>
#include <QSpinBox>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "core/Texture3D.h"
#include "dialog/GeneratorRegistry.h"
#include "dialog/QtWrapperBase.h"
#include "textures/TextureFactory.h"

using namespace gritwell;

namespace {

constexpr const char* kRegenerate = "build/field_guide > tools/gritwell/FieldGuide.inc";

// The page's controls that show a value: number boxes (a slider's value box
// stands for its slider), lists and switches.
std::vector<QWidget*> controlsOf(QWidget* page) {
    std::vector<QWidget*> controls;
    for (QWidget* w : page->findChildren<QWidget*>()) {
        const auto* button = qobject_cast<QAbstractButton*>(w);
        if (qobject_cast<QAbstractSpinBox*>(w) || qobject_cast<QComboBox*>(w) || (button && button->isCheckable()))
            controls.push_back(w);
    }
    return controls;
}

QString shown(const QWidget* w) {
    if (const auto* spin = qobject_cast<const QAbstractSpinBox*>(w)) return spin->text();
    if (const auto* combo = qobject_cast<const QComboBox*>(w)) return QString::number(combo->currentIndex());
    return qobject_cast<const QAbstractButton*>(w)->isChecked() ? QStringLiteral("on") : QStringLiteral("off");
}

// Loads a record into the texture and the page, with every signal held back
// so that nothing is written back or sent anywhere.
void load(const InfoBase& entry, const char* record) {
    entry.getT3D()->setStateFromDescription(record);
    const auto widgets = entry.getStackWidget()->findChildren<QWidget*>();
    std::vector<QSignalBlocker> quiet;
    quiet.reserve(static_cast<std::size_t>(widgets.size()));
    for (QWidget* w : widgets) quiet.emplace_back(w);
    entry.getWrapper()->updateUI();
}

// Values other than the default that the field's control can show: one of
// them moves it whatever its range and step.
std::vector<double> probes(const FieldInfo& f, const char* record) {
    switch (f.type) {
        case FieldType::Bool: return {readBoolField(record, f) ? 0.0 : 1.0};
        case FieldType::Int32: {
            const double d = readIntField(record, f);
            return {d + 1, d - 1};
        }
        case FieldType::Float: {
            const double d = readFloatField(record, f);
            return {d + 0.37, d - 0.37, d + 3.7, d * 0.5, 0.5};
        }
    }
    return {};
}

void write(char* record, const FieldInfo& f, double v) {
    switch (f.type) {
        case FieldType::Bool: writeBoolField(record, f, v != 0); break;
        case FieldType::Int32: writeIntField(record, f, static_cast<std::int32_t>(v)); break;
        case FieldType::Float: writeFloatField(record, f, static_cast<float>(v)); break;
    }
}

// The control that shows `f`: the one that moves, alone, when the field does.
QWidget* controlFor(const InfoBase& entry, const FieldInfo& f, const std::vector<QWidget*>& controls) {
    char defaults[256] = {};
    entry.getT3D()->getDescription(defaults);
    load(entry, defaults);
    std::vector<QString> before;
    for (QWidget* w : controls) before.push_back(shown(w));
    std::vector<QWidget*> moved;
    for (const double v : probes(f, defaults)) {
        char record[256];
        std::memcpy(record, defaults, sizeof record);
        write(record, f, v);
        load(entry, record);
        for (std::size_t i = 0; i < controls.size(); ++i)
            if (shown(controls[i]) != before[i] && std::find(moved.begin(), moved.end(), controls[i]) == moved.end())
                moved.push_back(controls[i]);
    }
    load(entry, defaults);
    return moved.size() == 1 ? moved.front() : nullptr;
}

// The tool tip as the form gives it, without the range line the panel adds.
std::string meaningOf(const QWidget* control) {
    QString tip = control->toolTip();
    const qsizetype rangeLine = tip.lastIndexOf(QStringLiteral("Range "));
    if (rangeLine >= 0 && (rangeLine == 0 || tip[rangeLine - 1] == QLatin1Char('\n'))) tip.truncate(rangeLine);
    return tip.trimmed().toStdString();
}

std::string number(double v) {
    char text[32];
    return std::string(text, std::to_chars(text, text + sizeof text, v).ptr);
}

std::string quoted(const std::string& s) { return "\"" + s + "\""; }

std::string entryLine(std::string_view generator, const FieldInfo& f, const QWidget* control) {
    std::string kind = "Control::Switch", range = "0, 0, \"\", \"\"";
    if (qobject_cast<const QComboBox*>(control)) kind = "Control::List";
    if (const auto* box = qobject_cast<const QDoubleSpinBox*>(control)) {
        kind = "Control::Number";
        range = number(box->minimum()) + ", " + number(box->maximum()) + ", " +
                quoted((box->textFromValue(box->minimum()) + box->suffix()).toStdString()) + ", " +
                quoted((box->textFromValue(box->maximum()) + box->suffix()).toStdString());
    } else if (const auto* box = qobject_cast<const QSpinBox*>(control)) {
        kind = "Control::Number";
        range = number(box->minimum()) + ", " + number(box->maximum()) + ", " +
                quoted(std::to_string(box->minimum()) + box->suffix().toStdString()) + ", " +
                quoted(std::to_string(box->maximum()) + box->suffix().toStdString());
    }
    return "{" + quoted(std::string(generator)) + ", " + quoted(std::string(f.name)) + ", R\"(" +
           meaningOf(control) + ")\", " + kind + ", " + range + "},\n";
}

}  // namespace

int main(int argc, char** argv) {
    const bool check = argc == 3 && std::string(argv[1]) == "--check";
    if (argc != 1 && !check) {
        std::cerr << "usage: field_guide [--check FILE]\n";
        return 2;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    int qtArgc = 1;
    QApplication application(qtArgc, argv);
    QDialog window;
    Ui::MainWindow ui;
    ui.setupUi(&window);
    std::map<std::string, InfoBase*> entries;
    GeneratorRegistry::createEntries(&ui, nullptr, entries);

    std::string table = std::string("// Generated by field_guide from the dialog's panels; do not edit.\n// Regenerate: ") +
                        kRegenerate + "\n";
    std::string unmatched;
    for (const GeneratorInfo* g : TextureFactory::hostGenerators()) {
        const auto found = entries.find(std::string(g->name));
        if (found == entries.end()) continue;
        const std::vector<QWidget*> controls = controlsOf(found->second->getStackWidget());
        for (const FieldInfo& f : g->fields) {
            if (const QWidget* control = controlFor(*found->second, f, controls))
                table += entryLine(g->name, f, control);
            else
                unmatched += " " + std::string(g->name) + "." + std::string(f.name);
        }
    }
    GeneratorRegistry::destroyEntries(entries);
    // Fields the dialog shows nowhere (or only together with another).
    if (!unmatched.empty()) std::cerr << "field_guide: without a control of their own:" << unmatched << '\n';
    if (!check) {
        std::cout << table;
        return 0;
    }
    std::ifstream in(argv[2], std::ios::binary);
    std::ostringstream committed;
    committed << in.rdbuf();
    if (committed.str() == table) return 0;
    std::cerr << "field_guide: " << argv[2] << " is not what the dialog says; regenerate it: " << kRegenerate << '\n';
    return 1;
}
