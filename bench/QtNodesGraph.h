#pragma once

#include <QtWidgets/QGraphicsItem>
#include <memory>
#include <nodes/Connection>
#include <nodes/FlowScene>
#include <nodes/FlowView>
#include <nodes/Node>
#include <nodes/NodeDataModel>
#include <vector>

/// A graph of QtNodes 2: boxes of three inputs and outputs in a grid, each joined to the next three.
class QtNodesGraph
{
public:
    QtNodesGraph(int columns, int rows)
    {
        const int count = columns * rows;
        for (int i = 0; i < count; ++i) {
            QtNodes::Node& node = _scene.createNode(std::make_unique<Model>());
            _scene.setNodePosition(node, QPointF(i % columns * 200.0, i / columns * 180.0));
            _nodes.push_back(&node);
        }
        for (int i = 0; i < count; ++i) {
            for (int port = 0; port < 3; ++port)
                _scene.createConnection(*_nodes[static_cast<std::size_t>((i + port + 1) % count)], port,
                                        *_nodes[static_cast<std::size_t>(i)], port);
        }
        view.setScene(&_scene);
        view.resize(1920, 1080);
        view.show();
        view.fitInView(_scene.itemsBoundingRect(), Qt::KeepAspectRatio);
    }

    /// A place on the title of a node, in pixels of the viewport.
    QPoint onNode(int index) const
    {
        const QtNodes::Node& node = *_nodes[static_cast<std::size_t>(index)];
        return view.mapFromScene(_scene.getNodePosition(node) + QPointF(40, 10));
    }

private:
    class Model : public QtNodes::NodeDataModel
    {
    public:
        QString caption() const override { return QStringLiteral("Transform"); }
        QString name() const override { return QStringLiteral("Transform"); }
        std::unique_ptr<NodeDataModel> clone() const override { return std::make_unique<Model>(); }
        unsigned int nPorts(QtNodes::PortType) const override { return 3; }
        std::shared_ptr<QtNodes::NodeDataType> dataType(QtNodes::PortType, QtNodes::PortIndex) const override
        {
            return std::make_shared<QtNodes::NodeDataType>(QStringLiteral("vec"), QStringLiteral("vec"));
        }
        std::shared_ptr<QtNodes::NodeData> outData(QtNodes::PortIndex) override { return nullptr; }
        void setInData(std::shared_ptr<QtNodes::NodeData>, QtNodes::PortIndex) override {}
        QWidget* embeddedWidget() override { return nullptr; }
    };

    QtNodes::FlowScene _scene;
    std::vector<QtNodes::Node*> _nodes;

public:
    QtNodes::FlowView view;
};
