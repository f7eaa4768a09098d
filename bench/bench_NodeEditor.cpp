// What the node editors cost: showing a node, and following a running scene.
#include "BenchNode.h"
#include "LineReporter.h"
#include "QorNodeEditorTreeView.h"
#include "QorNodeItemDelegate.h"
#include "QorObservingNodeEditor.h"
#include <Orvane/SFFloat.h>
#include <QtWidgets/QApplication>
#include <benchmark/benchmark.h>
#include <string>
#include <vector>

namespace {

using namespace Orvane;
using namespace Orvane::Qt4;

/// Numbers of the node, which is given as many more fields.
std::vector<SFFloat*> addFloats(BenchNode& node, int count)
{
    std::vector<SFFloat*> fields;
    for (int i = 0; i < count; ++i)
        fields.push_back(&node.add<SFFloat>(("float" + std::to_string(i)).c_str(), SFFLOAT_DT));
    return fields;
}

/// An editor on the screen that leaves nothing behind.
template <class Editor>
class ShownEditor
{
public:
    explicit ShownEditor(Node* node)
        : _delegate(nullptr)
        , editor(nullptr)
    {
        editor.setItemDelegate(&_delegate);
        editor.setNode(node);
        editor.resize(600, 400);
        editor.show();
        QCoreApplication::processEvents();
    }
    ~ShownEditor() { editor.setNode(nullptr); }

private:
    QorNodeItemDelegate _delegate;

public:
    Editor editor;
};

template <class Editor>
void setNode(benchmark::State& state, int valueCount)
{
    BenchNode node;
    if (valueCount > 0)
        node.add<MFFloat>("values", MFFLOAT_DT)
            .editValues()
            .assign(static_cast<std::size_t>(valueCount), 0.1F);
    node.fillTo(60);
    ShownEditor<Editor> shown(node.get());
    for (auto _ : state) {
        state.PauseTiming();
        shown.editor.setNode(nullptr);
        state.ResumeTiming();
        shown.editor.setNode(node.get());
    }
    if (shown.editor.model()->rowCount() < 60)
        state.SkipWithError("fields are missing");
}

/// Counts what is painted, so that a picture which never comes is not taken for a fast one.
class PaintCount : public QObject
{
public:
    explicit PaintCount(QObject* watched) { watched->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    long count = 0;
};

/// So many of the fields change in a frame; the editor follows and is painted.
void follow(benchmark::State& state, int fieldCount, int changeCount)
{
    BenchNode node;
    const std::vector<SFFloat*> fields = addFloats(node, fieldCount);
    node.run();
    const ShownEditor<QorObservingNodeEditor> shown(node.get());
    const PaintCount paints(shown.editor.treeView()->viewport());
    float value = 0.0F;
    // The last fields stand in the rows on top.
    const auto first = static_cast<std::size_t>(fieldCount - changeCount);
    const long before = paints.count;
    for (auto _ : state) {
        value += 0.25F;
        for (std::size_t i = first; i < fields.size(); ++i)
            fields[i]->setValue(0.0, value, Field::EXTERNAL_CT);
        node.context().runFrame();
        QCoreApplication::processEvents();
    }
    if (paints.count - before < static_cast<long>(state.iterations()))
        state.SkipWithError("the editor does not follow");
}

/// As `follow` with all fields, for the part that the frame has in it.
void frameAlone(benchmark::State& state, int fieldCount)
{
    BenchNode node;
    const std::vector<SFFloat*> fields = addFloats(node, fieldCount);
    for (SFFloat* field : fields)
        field->createOutSlot(false);
    node.run();
    float value = 0.0F;
    for (auto _ : state) {
        value += 0.25F;
        for (SFFloat* field : fields)
            field->setValue(0.0, value, Field::EXTERNAL_CT);
        node.context().runFrame();
    }
}

/// All rows have changed, and an editor that does not follow is painted.
void paintChanged(benchmark::State& state, int fieldCount)
{
    BenchNode node;
    const std::vector<SFFloat*> fields = addFloats(node, fieldCount);
    const ShownEditor<QorNodeEditor> shown(node.get());
    float value = 0.0F;
    for (auto _ : state) {
        value += 0.25F;
        for (SFFloat* field : fields)
            field->setValue(0.0, value, Field::EXTERNAL_CT);
        shown.editor.treeView()->viewport()->repaint();
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication app(argc, argv);
    const auto add = [](const char* name, auto run) {
        return benchmark::RegisterBenchmark(name, run)->Unit(benchmark::kMicrosecond);
    };
    add("set_node_60_fields", [](benchmark::State& state) { setNode<QorNodeEditor>(state, 0); });
    add("set_node_60_fields_1m_values",
        [](benchmark::State& state) { setNode<QorNodeEditor>(state, 1000000); });
    add("set_node_60_fields_observed",
        [](benchmark::State& state) { setNode<QorObservingNodeEditor>(state, 0); });
    add("inspector_5000_rows_changed_and_painted",
        [](benchmark::State& state) { paintChanged(state, 5000); });
    add("inspector_5000_rows_followed_and_painted",
        [](benchmark::State& state) { follow(state, 5000, 5000); });
    add("frame_of_5000_changes_alone", [](benchmark::State& state) { frameAlone(state, 5000); });
    add("live_field_of_60", [](benchmark::State& state) { follow(state, 60, 1); });
    add("live_field_of_5000", [](benchmark::State& state) { follow(state, 5000, 1); });
    return runBenchmarks(argc, argv);
}
