// The command line's table of the dialog's enumeration labels, held to the
// dialog itself: every combo box's items, the value each stores, and what
// each shows for any value.

#include <QComboBox>
#include <QDialog>

#include <climits>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include "EnumLabels.h"
#include "core/Texture3D.h"
#include "dialog/GeneratorRegistry.h"
#include "dialog/QtWrapperBase.h"
#include "textures/TextureFactory.h"

using namespace gritwell;

namespace {

class EnumLabelsInTheDialog : public testing::Test {
protected:
    void SetUp() override {
        ui_.setupUi(&window_);
        GeneratorRegistry::createEntries(&ui_, nullptr, entries_);
    }
    void TearDown() override { GeneratorRegistry::destroyEntries(entries_); }

    // The combo box showing a field: the one named after it, or the page's
    // only one.
    QComboBox* comboFor(const InfoBase& entry, std::string_view field) const {
        const QList<QComboBox*> combos = entry.getStackWidget()->findChildren<QComboBox*>();
        for (QComboBox* c : combos)
            if (c->objectName().toStdString() == field) return c;
        return combos.size() == 1 ? combos.front() : nullptr;
    }

    QDialog window_;
    Ui::MainWindow ui_;
    std::map<std::string, InfoBase*> entries_;
};

}  // namespace

TEST_F(EnumLabelsInTheDialog, EveryComboBoxIsInTheTableWithItsItems) {
    std::set<const EnumLabels::Field*> seen;
    for (const auto& [name, entry] : entries_) {
        const GeneratorInfo* info = TextureFactory::find(name);
        ASSERT_NE(info, nullptr) << name;
        for (QComboBox* combo : entry->getStackWidget()->findChildren<QComboBox*>()) {
            const EnumLabels::Field* field = nullptr;
            const FieldInfo* stored = nullptr;
            for (const FieldInfo& f : info->fields)
                if (const EnumLabels::Field* e = EnumLabels::find(name, f.name); e && comboFor(*entry, f.name) == combo) {
                    field = e;
                    stored = &f;
                }
            ASSERT_NE(field, nullptr) << name << ": combo box " << combo->objectName().toStdString()
                                      << " has no entry in EnumLabels";
            seen.insert(field);
            ASSERT_EQ(static_cast<std::size_t>(combo->count()), field->items.size()) << name;
            // Each item shows its label and, chosen, stores its value.
            for (int i = combo->count() - 1; i >= 0; --i) {
                const EnumLabels::Item& item = field->items[static_cast<std::size_t>(i)];
                EXPECT_EQ(combo->itemText(i).toStdString(), item.label) << name << " item " << i;
                combo->setCurrentIndex(i);
                char record[256] = {};
                entry->getT3D()->getDescription(record);
                EXPECT_EQ(readIntField(record, *stored), item.value) << name << " " << item.label;
            }
        }
    }
    EXPECT_EQ(seen.size(), EnumLabels::all().size()) << "a table entry that no combo box shows";
}

TEST_F(EnumLabelsInTheDialog, EachStoredValueShowsTheTablesLabel) {
    for (const EnumLabels::Field& field : EnumLabels::all()) {
        const auto found = entries_.find(std::string(field.generator));
        ASSERT_NE(found, entries_.end()) << field.generator;
        const InfoBase& entry = *found->second;
        const FieldInfo* f = TextureFactory::find(field.generator)->field(field.field);
        ASSERT_NE(f, nullptr) << field.field;
        QComboBox* combo = comboFor(entry, field.field);
        ASSERT_NE(combo, nullptr) << field.generator << ' ' << field.field;

        std::set<std::int32_t> values = {-1, 2, 5, 6, 7, 99, INT_MIN, INT_MAX};
        for (const EnumLabels::Item& item : field.items) values.insert(item.value);
        for (const std::int32_t v : values) {
            char record[256] = {};
            entry.getT3D()->getDescription(record);
            writeIntField(record, *f, v);
            entry.getT3D()->setStateFromDescription(record);
            entry.getWrapper()->updateUI();
            EXPECT_EQ(combo->currentText().toStdString(), EnumLabels::label(field, v))
                << field.generator << ' ' << field.field << " = " << v;
            // Showing a value never writes another one back.
            entry.getT3D()->getDescription(record);
            EXPECT_EQ(readIntField(record, *f), v) << field.generator << ' ' << field.field;
        }
    }
}
