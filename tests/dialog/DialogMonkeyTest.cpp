// Three thousand random user actions on the dialog, from a fixed seed:
// sliders set and stepped with keys, spin boxes set, stepped and typed into,
// combo boxes moved, toggles clicked, the transform block and "Interactive
// Update" used, generators chosen in the list and the list walked with the
// keyboard. After every action the texture, the controls, the list and what
// the host last received must still agree. No control on the pages opens a
// window of its own; combo boxes are moved without their pop-up list.
//
// Which record field a control drives, and how its value lands there, is
// learnt first by moving each control of every page once and back on a
// dialog of its own; the random run then holds every move to what was learnt.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTest>

#include <gtest/gtest.h>

#include "DialogTestSupport.h"
#include "core/FloatToInt.h"
#include "core/GeneratorInfo.h"
#include "core/Texture3D.h"
#include "dialog/GeneratorRegistry.h"
#include "dialog/MainWindow.h"
#include "dialog/QtWrapperBase.h"
#include "textures/TextureFactory.h"

using namespace gritwell;
using dialogtest::hostUpdates;

namespace {

// Any fixed seed: the run is the same everywhere. Choices are taken from the
// raw 32-bit draws by modulo, since the standard distributions differ
// between libraries.
constexpr std::uint32_t kSeed = 0x6d6f6e6b;
constexpr int kActions = 3000;
// The flags word the host sends; it must come back unchanged.
constexpr int kHostFlags = 2;

class Dice {
public:
    explicit Dice(std::uint32_t seed) : engine_(seed) {}
    // 0 .. n-1.
    int below(int n) { return static_cast<int>(static_cast<std::uint32_t>(engine_()) % static_cast<std::uint32_t>(n)); }
    // lo .. hi, both included.
    int between(int lo, int hi) { return lo + below(hi - lo + 1); }

private:
    std::mt19937 engine_;
};

using Record = std::string;  // a texture's 256-byte description buffer

Record recordOf(Texture3D* texture) {
    char bytes[MainWindow::kDescriptionSize] = {};
    texture->getDescription(bytes);
    return Record(bytes, sizeof bytes);
}

// ---- What a control drives --------------------------------------------------

// How a control's value lands in its field.
enum class Mapping { Flag, Integer, Real, Hundredths, TwoHundredths, Listed };

struct Binding {
    const FieldInfo* field = nullptr;
    Mapping mapping = Mapping::Real;
    std::vector<std::string> listed;  // the field's bytes for each combo item
};

std::string bytesOf(const void* p, std::size_t n) { return std::string(static_cast<const char*>(p), n); }
std::string floatBytes(float v) { return bytesOf(&v, sizeof v); }
std::string fieldBytes(const Record& r, const FieldInfo& f) { return r.substr(f.offset, fieldWidth(f.type)); }

// The generator's own controls on its page, without the transform block, in
// the order the form made them.
std::vector<QWidget*> ownControls(const QWidget& page) {
    std::vector<QWidget*> own;
    for (QSlider* c : dialogtest::ownControls<QSlider>(page)) own.push_back(c);
    for (QSpinBox* c : dialogtest::ownControls<QSpinBox>(page)) own.push_back(c);
    for (QDoubleSpinBox* c : dialogtest::ownControls<QDoubleSpinBox>(page)) own.push_back(c);
    for (QComboBox* c : dialogtest::ownControls<QComboBox>(page)) own.push_back(c);
    for (QPushButton* c : dialogtest::ownControls<QPushButton>(page)) own.push_back(c);
    return own;
}

double valueOf(const QWidget* c) {
    if (auto* s = qobject_cast<const QSlider*>(c)) return s->value();
    if (auto* s = qobject_cast<const QSpinBox*>(c)) return s->value();
    if (auto* s = qobject_cast<const QDoubleSpinBox*>(c)) return s->value();
    if (auto* s = qobject_cast<const QComboBox*>(c)) return s->currentIndex();
    if (auto* s = qobject_cast<const QPushButton*>(c)) return s->isChecked() ? 1 : 0;
    return 0;
}

// The field bytes a control value maps to; empty where the mapping does not
// apply to the field's type.
std::string encode(Mapping mapping, double v, const Binding& b) {
    const FieldType type = b.field->type;
    const int whole = truncToInt(v);
    switch (mapping) {
        case Mapping::Flag:
            return type == FieldType::Bool ? std::string(1, v != 0 ? 1 : 0) : std::string();
        case Mapping::Integer: {
            const std::int32_t i = whole;
            return type == FieldType::Int32 ? bytesOf(&i, sizeof i) : std::string();
        }
        case Mapping::Real:
            return type == FieldType::Float ? floatBytes(static_cast<float>(v)) : std::string();
        case Mapping::Hundredths:
            return type == FieldType::Float ? floatBytes(static_cast<float>(whole) / 100.0f) : std::string();
        case Mapping::TwoHundredths:
            return type == FieldType::Float ? floatBytes(static_cast<float>(whole) / 200.0f) : std::string();
        case Mapping::Listed:
            return whole >= 0 && whole < static_cast<int>(b.listed.size()) ? b.listed[static_cast<std::size_t>(whole)]
                                                                          : std::string();
    }
    return std::string();
}

// The ways the panels map each kind of control.
std::vector<Mapping> candidateMappings(const QWidget* c) {
    if (qobject_cast<const QPushButton*>(c) != nullptr) return {Mapping::Flag};
    if (qobject_cast<const QDoubleSpinBox*>(c) != nullptr) return {Mapping::Real};
    if (qobject_cast<const QComboBox*>(c) != nullptr) return {Mapping::Listed};
    return {Mapping::Hundredths, Mapping::Integer, Mapping::Real, Mapping::TwoHundredths};
}

// A value one step away from `from`, inside the range and not 0, so that
// every mapping gives it a distinct image.
template <class C>
auto probeValue(const C* c) {
    const auto from = c->value();
    const auto step = c->singleStep();
    for (const auto candidate : {from + step, from - step, from + 2 * step, from - 2 * step})
        if (candidate >= c->minimum() && candidate <= c->maximum() && candidate != 0) return candidate;
    return from;
}

struct Probe {
    double value = 0;           // the control's value after the first move
    std::vector<Record> after;  // the description after each move
};

// Moves `c` once and back. A combo box goes through every item instead,
// ending on the one it showed, and `after` is indexed by item.
Probe probe(QWidget* c, Texture3D* texture) {
    Probe p;
    const auto moveAndBack = [&](auto* s, auto to) {
        const auto from = s->value();
        s->setValue(to);
        p.value = s->value();
        p.after.push_back(recordOf(texture));
        s->setValue(from);
        p.after.push_back(recordOf(texture));
    };
    if (auto* s = qobject_cast<QSlider*>(c)) {
        moveAndBack(s, probeValue(s));
    } else if (auto* s = qobject_cast<QSpinBox*>(c)) {
        moveAndBack(s, probeValue(s));
    } else if (auto* s = qobject_cast<QDoubleSpinBox*>(c)) {
        moveAndBack(s, probeValue(s));
    } else if (auto* s = qobject_cast<QComboBox*>(c)) {
        const int from = s->currentIndex();
        p.after.resize(static_cast<std::size_t>(s->count()));
        for (int k = 1; k <= s->count(); ++k) {
            const int item = (from + k) % s->count();
            s->setCurrentIndex(item);
            p.after[static_cast<std::size_t>(item)] = recordOf(texture);
        }
    } else if (auto* s = qobject_cast<QPushButton*>(c)) {
        s->click();
        p.value = s->isChecked() ? 1 : 0;
        p.after.push_back(recordOf(texture));
        s->click();
        p.after.push_back(recordOf(texture));
    }
    return p;
}

// The fields whose bytes differ between two descriptions.
std::set<const FieldInfo*> changedFields(const GeneratorInfo& info, const Record& a, const Record& b) {
    std::set<const FieldInfo*> changed;
    for (const FieldInfo& f : info.fields)
        if (fieldBytes(a, f) != fieldBytes(b, f)) changed.insert(&f);
    return changed;
}

using Bindings = std::map<std::string, std::map<std::string, Binding>>;  // generator -> control -> binding

// Learns every own control's binding on a dialog of its own. Each control
// must drive exactly one field, on the way there and back, in one of the
// ways the panels map values.
Bindings learnBindings() {
    dialogtest::RecordingHost host;
    MainWindow w(nullptr);
    Bindings bindings;
    for (const GeneratorRegistry::Registration& r : GeneratorRegistry::registrations()) {
        const std::string generator(r.name);
        const GeneratorInfo* info = TextureFactory::find(generator);
        InfoBase* entry = w.entry(generator);
        if (info == nullptr || entry == nullptr) {
            ADD_FAILURE() << generator << " is not a generator of the dialog";
            continue;
        }
        // The page as the user first sees it: the dialog loads every page
        // from its texture before showing it.
        entry->getWrapper()->updateUI();
        Texture3D* texture = entry->getT3D();
        for (QWidget* c : ownControls(*entry->getStackWidget())) {
            const std::string name = c->objectName().toStdString();
            SCOPED_TRACE(generator + " " + name);
            const Record start = recordOf(texture);
            const Probe p = probe(c, texture);
            const bool combo = qobject_cast<QComboBox*>(c) != nullptr;

            std::set<const FieldInfo*> driven;
            if (combo) {
                // Whatever differs from item to item.
                for (std::size_t k = 1; k < p.after.size(); ++k)
                    for (const FieldInfo* f : changedFields(*info, p.after[k - 1], p.after[k])) driven.insert(f);
            } else {
                driven = changedFields(*info, start, p.after[0]);
                const std::set<const FieldInfo*> back = changedFields(*info, p.after[0], p.after[1]);
                std::erase_if(driven, [&](const FieldInfo* f) { return back.count(f) == 0; });
            }
            if (driven.size() != 1) {
                ADD_FAILURE() << "moves " << driven.size() << " fields";
                continue;
            }
            Binding b;
            b.field = *driven.begin();
            if (combo) {
                b.mapping = Mapping::Listed;
                for (const Record& rec : p.after) b.listed.push_back(fieldBytes(rec, *b.field));
                bindings[generator][name] = b;
                continue;
            }
            const std::vector<Mapping> candidates = candidateMappings(c);
            const auto explains = [&](Mapping m) { return encode(m, p.value, b) == fieldBytes(p.after[0], *b.field); };
            const auto found = std::find_if(candidates.begin(), candidates.end(), explains);
            if (found == candidates.end()) {
                ADD_FAILURE() << "writes " << b.field->name << " in no known way";
                continue;
            }
            b.mapping = *found;
            bindings[generator][name] = b;
        }
    }
    return bindings;
}

// Whether a control shows its field the way the page loads it: sliders at
// the field times their scale truncated toward zero, spin boxes rounded to
// their decimals, each inside its range.
bool showsField(const QWidget* c, const Binding& b, const Record& r) {
    const std::string bytes = fieldBytes(r, *b.field);
    const double shown = valueOf(c);
    float f;
    std::int32_t i;
    double loaded = 0;
    switch (b.mapping) {
        case Mapping::Flag:
            return shown == (bytes[0] != 0 ? 1 : 0);
        case Mapping::Listed: {
            const int index = truncToInt(shown);
            return index >= 0 && index < static_cast<int>(b.listed.size()) &&
                   b.listed[static_cast<std::size_t>(index)] == bytes;
        }
        case Mapping::Integer:
            std::memcpy(&i, bytes.data(), sizeof i);
            loaded = i;
            break;
        case Mapping::Real:
            std::memcpy(&f, bytes.data(), sizeof f);
            if (auto* s = qobject_cast<const QDoubleSpinBox*>(c))
                loaded = QString::number(static_cast<double>(f), 'f', s->decimals()).toDouble();
            else
                loaded = truncToInt(static_cast<double>(f));
            break;
        case Mapping::Hundredths:
        case Mapping::TwoHundredths:
            std::memcpy(&f, bytes.data(), sizeof f);
            loaded = truncToInt(static_cast<double>(f * (b.mapping == Mapping::Hundredths ? 100.0f : 200.0f)));
            break;
    }
    if (auto* s = qobject_cast<const QAbstractSlider*>(c)) loaded = std::clamp<double>(loaded, s->minimum(), s->maximum());
    if (auto* s = qobject_cast<const QSpinBox*>(c)) loaded = std::clamp<double>(loaded, s->minimum(), s->maximum());
    if (auto* s = qobject_cast<const QDoubleSpinBox*>(c)) loaded = std::clamp(loaded, s->minimum(), s->maximum());
    return shown == loaded;
}

// Per generator, the fields more than one control writes.
std::map<std::string, std::set<const FieldInfo*>> sharedFields(const Bindings& bindings) {
    std::map<std::string, std::set<const FieldInfo*>> shared;
    for (const auto& [generator, controls] : bindings) {
        std::set<const FieldInfo*> seen;
        for (const auto& [name, b] : controls)
            if (!seen.insert(b.field).second) shared[generator].insert(b.field);
    }
    return shared;
}

// ---- The dialog under the monkey -------------------------------------------

struct Page {
    std::string generator;
    const GeneratorInfo* info = nullptr;
    QWidget* widget = nullptr;
    std::vector<QWidget*> own;
    std::vector<QWidget*> common;  // the nine transform sliders and the overall scale
    QPushButton* interactive = nullptr;
    std::vector<std::pair<QSlider*, QSlider*>> ranges;  // paired minimum and maximum sliders
};

struct Action {
    std::string what;  // for failure messages
    bool choseGenerator = false;
};

struct State {
    std::string generator;
    std::map<std::string, Record> records;  // every generator's
    std::vector<double> actedValues;        // own controls of the page shown before the action
    std::string transforms;                 // the current panel's
    std::size_t updates = 0;
};

class Monkey {
public:
    Monkey(MainWindow& w, const Bindings& bindings)
        : w_(w), bindings_(bindings), shared_(sharedFields(bindings)), dice_(kSeed) {
        list_ = w.findChild<QListWidget*>("generatorList");
        stack_ = w.findChild<QStackedWidget*>("stackedWidget");
        for (const GeneratorRegistry::Registration& r : GeneratorRegistry::registrations()) {
            Page p;
            p.generator = std::string(r.name);
            p.info = TextureFactory::find(p.generator);
            p.widget = w.entry(p.generator)->getStackWidget();
            p.own = ownControls(*p.widget);
            const QWidget* block = p.widget->findChild<QWidget*>("CommonWidget");
            for (const char* name : {"transX", "transY", "transZ", "rotX", "rotY", "rotZ", "scaleX", "scaleY", "scaleZ"})
                p.common.push_back(block->findChild<QSlider*>(name));
            p.common.push_back(block->findChild<QDoubleSpinBox*>("overallScale"));
            p.interactive = block->findChild<QPushButton*>("newInteractiveUpdate");
            // "minColor" pairs with "maxColor", "cellMinColor" with
            // "cellMaxColor" and so on; a pair whose maximum writes a field
            // another control shares (Weave's) is left out.
            const auto& bound = bindings_.at(p.generator);
            const auto shared = shared_.find(p.generator);
            const auto isShared = [&](const QString& name) {
                const auto found = bound.find(name.toStdString());
                return found == bound.end() ||
                       (shared != shared_.end() && shared->second.count(found->second.field) != 0);
            };
            for (QWidget* c : p.own) {
                const QString name = c->objectName();
                if (!name.startsWith("minColor") && !name.contains("MinColor")) continue;
                QString partner = name;
                partner.replace("minColor", "maxColor").replace("MinColor", "MaxColor");
                auto* max = p.widget->findChild<QSlider*>(partner);
                if (max != nullptr && !isShared(name) && !isShared(partner))
                    p.ranges.emplace_back(static_cast<QSlider*>(c), max);
            }
            pages_[p.generator] = p;
        }
    }

    // One random action.
    Action act() {
        Page& page = pages_.at(w_.currentGenerator());
        // A visit to a page lasts 20 to 80 actions, so that every page gets
        // its share of the run; a few clicks in the list fall in between,
        // some on the generator shown, which loads its page again.
        if (--visitLeft_ <= 0) {
            visitLeft_ = dice_.between(20, 80);
            return {clickGenerator(nextFromDeck()), true};
        }
        const int r = dice_.below(100);
        if (r < 2) return {clickGenerator(dice_.below(list_->count())), true};
        if (r < 5) return {clickGenerator(list_->row(w_.entry(page.generator)->getItem())), true};
        if (r < 8) return {walkList()};
        if (r < 11) {
            page.interactive->click();
            return {"Interactive Update"};
        }
        if (r < 26) return {actOn(page.common[static_cast<std::size_t>(dice_.below(static_cast<int>(page.common.size())))])};
        return {actOn(page.own[static_cast<std::size_t>(dice_.below(static_cast<int>(page.own.size())))])};
    }

    std::size_t pairedRanges() const {
        std::size_t n = 0;
        for (const auto& [name, page] : pages_) n += page.ranges.size();
        return n;
    }

    // The dialog's state; `acted` names the page whose own controls are read.
    State state(const std::string& acted) const {
        State s;
        s.generator = w_.currentGenerator();
        for (const auto& [name, page] : pages_) s.records[name] = recordOf(w_.entry(name)->getT3D());
        for (QWidget* c : pages_.at(acted).own) s.actedValues.push_back(valueOf(c));
        TransformData t;
        w_.getCurrentWrapper()->getTransforms(t);
        s.transforms = bytesOf(&t, sizeof t);
        s.updates = hostUpdates().size();
        return s;
    }

    // Everything that must hold after any action, given the state before it.
    void expectInStep(const State& before, bool choseGenerator) const {
        const State after = state(before.generator);
        const Page& page = pages_.at(after.generator);
        const Record& record = after.records.at(after.generator);

        // One chosen generator: the check mark, the page and the record agree.
        EXPECT_EQ(Texture3D::recordName(record.data()), after.generator);
        std::vector<std::string> checked;
        for (int row = 0; row < list_->count(); ++row)
            if (list_->item(row)->checkState() == Qt::Checked) checked.push_back(list_->item(row)->text().toStdString());
        EXPECT_EQ(checked, std::vector<std::string>{after.generator});
        EXPECT_EQ(stack_->currentWidget(), page.widget);
        if (!choseGenerator) {
            EXPECT_EQ(after.generator, before.generator);
        }

        // The host's last update is the state as it now stands, and any
        // change reached it.
        ASSERT_FALSE(hostUpdates().empty());
        const dialogtest::HostUpdate& last = hostUpdates().back();
        EXPECT_EQ(bytesOf(last.record.data(), last.record.size()), record);
        EXPECT_EQ(bytesOf(last.transforms.data(), last.transforms.size()), after.transforms);
        const float tag = 4.0f;
        std::uint32_t tagBits;
        std::memcpy(&tagBits, &tag, sizeof tagBits);
        EXPECT_EQ(last.words, (std::array<std::uint32_t, 4>{tagBits, 8, 0, 0}));
        if (after.generator != before.generator || record != before.records.at(after.generator) ||
            after.transforms != before.transforms) {
            EXPECT_GT(after.updates, before.updates);
        }

        // Only the generator acted on changes. Choosing another one can
        // still commit an edit typed into the old page and left pending: the
        // spin box gives it up as the list takes the focus.
        for (const auto& [name, rec] : after.records)
            if (name != before.generator) {
                EXPECT_EQ(rec, before.records.at(name)) << name;
            }

        // No field moved without its control, and after a move on the page
        // (not a reload of it by choosing) each control that moved holds its
        // field at its value.
        const Page& acted = pages_.at(before.generator);
        const auto& bound = bindings_.at(before.generator);
        std::set<const FieldInfo*> accounted;
        for (std::size_t k = 0; k < acted.own.size(); ++k) {
            if (after.actedValues[k] == before.actedValues[k]) continue;
            const std::string name = acted.own[k]->objectName().toStdString();
            const auto found = bound.find(name);
            if (found == bound.end()) continue;
            const Binding& b = found->second;
            accounted.insert(b.field);
            if (!choseGenerator) {
                EXPECT_EQ(fieldBytes(after.records.at(acted.generator), *b.field),
                          encode(b.mapping, after.actedValues[k], b))
                    << name << " at " << after.actedValues[k] << " -> " << b.field->name;
            }
        }
        for (const FieldInfo* f :
             changedFields(*acted.info, before.records.at(acted.generator), after.records.at(acted.generator)))
            EXPECT_TRUE(accounted.count(f) != 0) << f->name << " changed with no control of it moving";

        // The transform block shows the panel's words, each as the control
        // stores it or as a loaded word is shown.
        TransformData t;
        w_.getCurrentWrapper()->getTransforms(t);
        EXPECT_EQ(t.flags, kHostFlags);
        const float words[] = {t.xOffset, t.yOffset, t.zOffset, t.xAngle, t.yAngle, t.zAngle, t.xScale, t.yScale, t.zScale};
        for (std::size_t k = 0; k < std::size(words); ++k) {
            const int v = static_cast<QSlider*>(page.common[k])->value();
            const double units = k >= 3 && k < 6 ? 360.0 : 100.0;
            const float stored = k < 6 ? static_cast<float>(v / units) : static_cast<float>(v) / 100.0f;
            EXPECT_TRUE(words[k] == stored || truncToInt(units * static_cast<double>(words[k])) == v)
                << page.common[k]->objectName().toStdString() << " at " << v << ", word " << words[k];
        }
        EXPECT_EQ(t.overallScale, static_cast<float>(static_cast<QDoubleSpinBox*>(page.common.back())->value()));

        if (choseGenerator) {
            // The chosen page shows its texture's fields (a control that
            // shares its field with another cannot), and the transforms
            // carried over from the page shown before.
            const auto& shownBound = bindings_.at(after.generator);
            const auto shownShared = shared_.find(after.generator);
            for (QWidget* c : page.own) {
                const auto found = shownBound.find(c->objectName().toStdString());
                if (found == shownBound.end()) continue;
                if (shownShared != shared_.end() && shownShared->second.count(found->second.field) != 0) continue;
                EXPECT_TRUE(showsField(c, found->second, record))
                    << c->objectName().toStdString() << " shows " << valueOf(c) << " for " << found->second.field->name;
            }
            TransformData carried;
            std::memcpy(&carried, before.transforms.data(), sizeof carried);
            const float carriedWords[] = {carried.xOffset, carried.yOffset, carried.zOffset,
                                          carried.xAngle,  carried.yAngle,  carried.zAngle,
                                          carried.xScale,  carried.yScale,  carried.zScale};
            for (std::size_t k = 0; k < std::size(carriedWords); ++k) {
                const auto* slider = static_cast<QSlider*>(page.common[k]);
                const double units = k >= 3 && k < 6 ? 360.0 : 100.0;
                EXPECT_EQ(slider->value(), std::clamp(truncToInt(units * static_cast<double>(carriedWords[k])),
                                                      slider->minimum(), slider->maximum()))
                    << slider->objectName().toStdString();
            }
            EXPECT_EQ(static_cast<float>(static_cast<QDoubleSpinBox*>(page.common.back())->value()),
                      carried.overallScale);
        }

        // Paired colour sliders keep their minimum at most their maximum.
        for (const auto& [min, max] : page.ranges)
            EXPECT_LE(min->value(), max->value()) << min->objectName().toStdString();

        // Interactive update: the button shows the record's flag, and the
        // page's own controls track accordingly.
        const bool interactive = record[35] != 0;
        EXPECT_EQ(page.interactive->isChecked(), interactive);
        for (QWidget* c : page.own) {
            if (auto* s = qobject_cast<QSlider*>(c)) {
                EXPECT_EQ(s->hasTracking(), interactive) << s->objectName().toStdString();
            }
            if (auto* s = qobject_cast<QAbstractSpinBox*>(c)) {
                EXPECT_EQ(s->keyboardTracking(), interactive) << s->objectName().toStdString();
            }
        }
    }

private:
    // The next list row of a shuffled deck of all rows.
    int nextFromDeck() {
        if (deck_.empty()) {
            for (int row = 0; row < list_->count(); ++row) deck_.push_back(row);
            for (int k = static_cast<int>(deck_.size()) - 1; k > 0; --k)
                std::swap(deck_[static_cast<std::size_t>(k)], deck_[static_cast<std::size_t>(dice_.below(k + 1))]);
        }
        const int row = deck_.back();
        deck_.pop_back();
        return row;
    }

    std::string clickGenerator(int row) {
        QListWidgetItem* item = list_->item(row);
        list_->scrollToItem(item);
        QTest::mouseClick(list_->viewport(), Qt::LeftButton, {}, list_->visualItemRect(item).center());
        return "click " + item->text().toStdString();
    }

    // Moving through the list with the keyboard chooses nothing. (Space is
    // left out: it flips the check box of the current row.)
    std::string walkList() {
        static constexpr Qt::Key kKeys[] = {Qt::Key_Up, Qt::Key_Down, Qt::Key_Home, Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown};
        const Qt::Key key = kKeys[dice_.below(static_cast<int>(std::size(kKeys)))];
        QTest::keyClick(list_, key);
        return "list key " + std::to_string(static_cast<int>(key));
    }

    // Keys that change a slider, a spin box or a combo box without opening
    // anything or reaching the dialog's own Return/Escape handling.
    std::string pressKey(QWidget* c, std::initializer_list<Qt::Key> keys) {
        const Qt::Key key = *(keys.begin() + dice_.below(static_cast<int>(keys.size())));
        QTest::keyClick(c, key);
        return "key " + std::to_string(static_cast<int>(key));
    }

    std::string actOn(QWidget* c) {
        const std::string name = c->objectName().toStdString() + ": ";
        const int how = dice_.below(3);
        if (auto* s = qobject_cast<QSlider*>(c)) {
            if (how == 0) {
                const int v = sliderValue(*s);
                s->setValue(v);
                return name + "set " + std::to_string(v);
            }
            return name + pressKey(s, {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp,
                                       Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End});
        }
        if (auto* s = qobject_cast<QSpinBox*>(c)) {
            const int v = dice_.between(s->minimum(), s->maximum());
            if (how == 0) {
                s->setValue(v);
                return name + "set " + std::to_string(v);
            }
            if (how == 1) return name + pressKey(s, {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown});
            return name + typeInto(s, s->locale().toString(v));
        }
        if (auto* s = qobject_cast<QDoubleSpinBox*>(c)) {
            const double v = s->minimum() + (s->maximum() - s->minimum()) * dice_.below(1001) / 1000.0;
            if (how == 0) {
                s->setValue(v);
                return name + "set " + std::to_string(v);
            }
            if (how == 1) return name + pressKey(s, {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown});
            return name + typeInto(s, s->locale().toString(v, 'f', s->decimals()));
        }
        if (auto* s = qobject_cast<QComboBox*>(c)) {
            if (how == 0) {
                const int index = dice_.below(s->count());
                s->setCurrentIndex(index);
                return name + "item " + std::to_string(index);
            }
            return name + pressKey(s, {Qt::Key_Up, Qt::Key_Down, Qt::Key_Home, Qt::Key_End});
        }
        if (auto* s = qobject_cast<QPushButton*>(c)) {
            if (how == 0) {
                QTest::keyClick(s, Qt::Key_Space);
                return name + "space";
            }
            s->click();
            return name + "click";
        }
        return name + "nothing";
    }

    // Mostly any value of the range; often an end of it, or a value that a
    // hundredths slider shows one lower once its page is loaded again
    // (53 is stored as 0.53f, and 0.53f * 100 truncates to 52).
    int sliderValue(const QSlider& s) {
        switch (dice_.below(4)) {
            case 0:
                return dice_.below(2) == 0 ? s.minimum() : s.maximum();
            case 1: {
                std::vector<int> lossy;
                for (int v = s.minimum(); v <= s.maximum(); ++v)
                    if (truncToInt(static_cast<double>(static_cast<float>(v) / 100.0f * 100.0f)) != v) lossy.push_back(v);
                if (!lossy.empty()) return lossy[static_cast<std::size_t>(dice_.below(static_cast<int>(lossy.size())))];
                break;
            }
            default:
                break;
        }
        return dice_.between(s.minimum(), s.maximum());
    }

    // Replaces the text and types a number, without Return: with keyboard
    // tracking off the value waits for the next step or set.
    std::string typeInto(QAbstractSpinBox* s, const QString& text) {
        QTest::keyClick(s, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(s, text);
        return "typed " + text.toStdString();
    }

    MainWindow& w_;
    const Bindings& bindings_;
    std::map<std::string, std::set<const FieldInfo*>> shared_;
    Dice dice_;
    QListWidget* list_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    std::map<std::string, Page> pages_;
    std::vector<int> deck_;  // list rows still to be chosen this round
    int visitLeft_ = 0;      // actions left on the shown page
};

}  // namespace

TEST(DialogMonkey, EveryControlDrivesOneFieldInAKnownWay) {
    const Bindings bindings = learnBindings();
    MainWindow w(nullptr);
    std::size_t controls = 0, bound = 0;
    for (const GeneratorRegistry::Registration& r : GeneratorRegistry::registrations()) {
        controls += ownControls(*w.entry(std::string(r.name))->getStackWidget()).size();
        const auto found = bindings.find(std::string(r.name));
        if (found != bindings.end()) bound += found->second.size();
    }
    EXPECT_GT(controls, 100u);
    EXPECT_EQ(bound, controls);

    // Two controls write one field only where Weave's vertical maximum
    // writes the horizontal one, as stored records expect.
    const auto shared = sharedFields(bindings);
    ASSERT_EQ(shared.size(), 1u);
    EXPECT_EQ(shared.begin()->first, "Weave");
    ASSERT_EQ(shared.begin()->second.size(), 1u);
    EXPECT_EQ((*shared.begin()->second.begin())->name, "horizontalMaxColor");
}

TEST(DialogMonkey, RandomActionsKeepTextureControlsListAndHostInStep) {
    const Bindings bindings = learnBindings();
    ASSERT_FALSE(HasFailure());

    dialogtest::RecordingHost host;
    MainWindow w(nullptr);
    char empty[MainWindow::kDescriptionSize] = {};
    TransformData transforms;
    transforms.flags = kHostFlags;
    w.setDescriptionAndTransforms(empty, transforms);
    w.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));

    Monkey monkey(w, bindings);
    std::set<std::string> visited;
    for (int action = 0; action < kActions; ++action) {
        const State before = monkey.state(w.currentGenerator());
        const Action done = monkey.act();
        SCOPED_TRACE("action " + std::to_string(action) + " on " + before.generator + ": " + done.what);
        ASSERT_TRUE(w.isVisible());
        monkey.expectInStep(before, done.choseGenerator);
        if (HasFailure()) return;
        visited.insert(w.currentGenerator());
    }
    // Every page had its visits.
    EXPECT_EQ(visited.size(), GeneratorRegistry::registrations().size());
    EXPECT_GE(monkey.pairedRanges(), 10u);

    // OK hands back the generator shown, exactly as the host last saw it.
    const State last = monkey.state(w.currentGenerator());
    QTest::mouseClick(w.findChild<QDialogButtonBox*>("buttonBox")->button(QDialogButtonBox::Ok), Qt::LeftButton);
    char description[MainWindow::kDescriptionSize];
    w.getDescription(description);
    const Record& record = last.records.at(last.generator);
    const int size = static_cast<unsigned char>(record[0]);
    EXPECT_EQ(static_cast<unsigned char>(description[0]), size);
    EXPECT_EQ(std::memcmp(description, record.data(), static_cast<std::size_t>(size)), 0);
    EXPECT_EQ(std::memcmp(description, hostUpdates().back().record.data(), static_cast<std::size_t>(size)), 0);
    TransformData out;
    w.getTransforms(out);
    EXPECT_EQ(bytesOf(&out, sizeof out), last.transforms);
}
