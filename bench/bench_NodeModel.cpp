// What showing a node costs: its rows, the rows of a field of a million values, and a picture of the tree.
#include "BenchNode.h"
#include "LineReporter.h"
#include "QorMFieldItem.h"
#include "QorNodeModel.h"
#include "base/Graph.h"
#include "base/NodeClass.h"
#include <Orvane/Context.h>
#include <Orvane/Field.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFString.h>
#include <Orvane/MFVec3f.h>
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFFloat.h>
#include <QtGui/QPixmap>
#include <QtWidgets/QApplication>
#include <QtWidgets/QTreeView>
#include <benchmark/benchmark.h>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace Orvane;
using namespace Orvane::Qt4;

constexpr int FieldCount = 60;
constexpr int ValueCount = 1000000;

void rowsOfNode(benchmark::State& state)
{
    BenchNode node;
    node.fillTo(FieldCount);
    for (auto _ : state) {
        const QorNodeModel model(node.get(), nullptr);
        if (model.rowCount() < FieldCount)
            state.SkipWithError("fields are missing");
    }
}

void rowsOfLargeField(benchmark::State& state)
{
    BenchNode node;
    node.add<MFFloat>("values", MFFLOAT_DT).editValues().assign(ValueCount, 0.1F);
    node.fillTo(FieldCount);
    for (auto _ : state) {
        const QorNodeModel model(node.get(), nullptr);
        benchmark::DoNotOptimize(model.rowCount());
    }
}

/// The press that fills the rows of a delayed field.
void fill(benchmark::State& state, Field& field)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto item = std::make_unique<QorMFieldItem>(&field, nullptr);
        // The placeholder would be left alive.
        item->removeChild(item->child(0));
        state.ResumeTiming();
        item->updateChildValues(true);
        state.PauseTiming();
        if (item->childCount() != ValueCount || item->getStringValue(ValueCount - 1).isEmpty())
            state.SkipWithError("values are missing");
        item.reset();
        state.ResumeTiming();
    }
}

void fillFloats(benchmark::State& state)
{
    BenchNode node;
    auto& field = node.add<MFFloat>("values", MFFLOAT_DT);
    for (int i = 0; i < ValueCount; ++i)
        field.editValues().push_back(static_cast<float>(i) * 0.37F);
    fill(state, field);
}

void fillPoints(benchmark::State& state)
{
    BenchNode node;
    auto& field = node.add<MFVec3f>("values", MFVEC3F_DT);
    for (int i = 0; i < ValueCount; ++i)
        field.editValues().emplace_back(static_cast<float>(i) * 0.37F, 0.1F, static_cast<float>(-i));
    fill(state, field);
}

void fillStrings(benchmark::State& state)
{
    BenchNode node;
    auto& field = node.add<MFString>("values", MFSTRING_DT);
    for (int i = 0; i < ValueCount; ++i)
        field.addValue("value " + std::to_string(i));
    fill(state, field);
}

/// A tree view draws its visible rows afresh, after \a change.
template <class Change>
void paint(benchmark::State& state, const BenchNode& node, Change change)
{
    QorNodeModel model(node.get(), nullptr);
    QTreeView view;
    view.resize(600, 400);
    view.setModel(&model);
    view.show();
    QCoreApplication::processEvents();
    QPixmap picture(view.viewport()->size());
    for (auto _ : state) {
        change();
        view.viewport()->render(&picture);
    }
}

void paintFields(benchmark::State& state, int count)
{
    BenchNode node;
    node.fillTo(count);
    paint(state, node, [] {});
}

/// Every row has changed since it was painted.
void paintChangedFields(benchmark::State& state)
{
    BenchNode node;
    std::vector<SFFloat*> fields;
    for (int i = 0; i < 5000; ++i)
        fields.push_back(&node.add<SFFloat>(("field" + std::to_string(i)).c_str(), SFFLOAT_DT));
    float value = 0.0F;
    paint(state, node, [&] {
        value += 0.25F;
        for (SFFloat* field : fields)
            field->setValue(0.0, value, Field::EXTERNAL_CT);
    });
}

/// What a notification looks for: the cell of the field in the last row.
void findCell(benchmark::State& state)
{
    BenchNode node;
    node.fillTo(FieldCount);
    const QorNodeModel model(node.get(), nullptr);
    Field* const last = node.get()->findField(0U);
    for (auto _ : state)
        benchmark::DoNotOptimize(model.index(last).isValid());
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication app(argc, argv);
    const auto add = [](const char* name, auto run) { return benchmark::RegisterBenchmark(name, run); };
    add("rows_of_60_fields", rowsOfNode)->Unit(benchmark::kMicrosecond);
    add("rows_of_60_fields_1m_values", rowsOfLargeField)->Unit(benchmark::kMicrosecond);
    add("fill_1m_floats", fillFloats)->Unit(benchmark::kMillisecond);
    add("fill_1m_points", fillPoints)->Unit(benchmark::kMillisecond);
    add("fill_1m_strings", fillStrings)->Unit(benchmark::kMillisecond);
    add("cell_of_last_of_60_fields", findCell)->Unit(benchmark::kNanosecond);
    add("paint_tree_of_60_fields", [](benchmark::State& state) {
        paintFields(state, 60);
    })->Unit(benchmark::kMicrosecond);
    add("paint_tree_of_600_fields", [](benchmark::State& state) {
        paintFields(state, 600);
    })->Unit(benchmark::kMicrosecond);
    add("change_and_paint_5000_fields", paintChangedFields)->Unit(benchmark::kMicrosecond);
    return runBenchmarks(argc, argv);
}
