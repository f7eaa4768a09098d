#pragma once

#include "base/Graph.h"
#include <Orvane/Context.h>
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/Route.h>
#include <Orvane/SFNode.h>
#include <QtGlobal>
#include <cctype>
#include <map>
#include <string>
#include <vector>

/// Builds nodes from a text in the classic encoding by plain graph calls, so that what nodes do is tested
/// apart from the loaders. It knows nodes, DEF, USE, ROUTE and no faults: a wrong text ends the test.
class SceneText
{
public:
    SceneText(Orvane::Context& context, Orvane::Node& scene, const std::string& text)
        : _context(context)
        , _scene(scene)
    {
        split(text);
        Orvane::Field* const children = scene.findField("children", Orvane::Node::DECLARED_FSO);
        while (_next < _words.size()) {
            if (_words[_next] == "ROUTE")
                readRoute();
            else
                add(*children);
        }
    }

private:
    void split(const std::string& text)
    {
        static const std::string Marks = "{}[]";
        std::size_t i = 0;
        while (i < text.size()) {
            const std::size_t begin = i++;
            if (isSpace(text[begin]))
                continue;
            if (text[begin] == '"')
                i = text.find('"', i) + 1;
            else if (Marks.find(text[begin]) == std::string::npos) {
                while (i < text.size() && !isSpace(text[i]) && Marks.find(text[i]) == std::string::npos)
                    ++i;
            }
            _words.push_back(text.substr(begin, i - begin));
        }
    }

    static bool isSpace(char c) { return c == ',' || std::isspace(static_cast<unsigned char>(c)); }

    std::string word() { return _words.at(_next++); }

    void readRoute()
    {
        ++_next;
        Orvane::Field* const out = end(word(), &Orvane::Node::findEventOutSlotID);
        ++_next;
        Orvane::Field* const in = end(word(), &Orvane::Node::findEventInSlotID);
        out->createOutSlot(false);
        in->createInSlot(false);
        Orvane::Route::create(*out->_outSlot, *in->_inSlot, Orvane::Route::SCENE_RT);
    }

    Orvane::Field* end(const std::string& text, int (Orvane::Node::*find)(const std::string&) const)
    {
        const std::size_t dot = text.find('.');
        Orvane::Node& node = *_names.at(text.substr(0, dot));
        return node.findField(static_cast<unsigned int>((node.*find)(text.substr(dot + 1))));
    }

    Orvane::NodeRef readNode()
    {
        std::string name;
        std::string type = word();
        if (type == "USE")
            return Orvane::NodeRef(_names.at(word()));
        if (type == "DEF") {
            name = word();
            type = word();
        }
        const Orvane::NodeRef node = Orvane::createNode(_context, *Orvane::findType(type), Orvane::LOADER_NC);
        if (!name.empty())
            _names[name] = node.get();
        Orvane::setName(*node, _scene.nameSpace(), name);
        ++_next;
        while (_words.at(_next) != "}")
            readField(*node);
        ++_next;
        return node;
    }

    void readField(Orvane::Node& node)
    {
        const std::string name = word();
        Orvane::Field* const field = node.findField(name, Orvane::Node::DECLARED_FSO);
        if (!field)
            qFatal("no field %s", name.c_str());
        const bool isList = _words.at(_next) == "[";
        _next += isList ? 1 : 0;
        if (field->dataType() == Orvane::SFNODE_DT || field->dataType() == Orvane::MFNODE_DT) {
            do {
                if (_words.at(_next) != "]")
                    add(*field);
            } while (isList && _words.at(_next) != "]");
        } else {
            std::string value;
            while (isList ? _words.at(_next) != "]" : isValue(_words.at(_next), value.empty()))
                value += (value.empty() ? "" : " ") + word();
            if (field->dataType() == Orvane::SFSTRING_DT && value.size() > 1 && value[0] == '"')
                value = value.substr(1, value.size() - 2); // its text form has no quotes
            std::string error;
            if (!field->parseValue(value, error))
                qFatal("%s %s: %s", name.c_str(), value.c_str(), error.c_str());
        }
        _next += isList ? 1 : 0;
    }

    /// Without brackets a value is one word, or as many numbers as follow.
    static bool isValue(const std::string& word, bool first)
    {
        return first || std::isdigit(static_cast<unsigned char>(word[0])) || word[0] == '-' || word[0] == '.';
    }

    void add(Orvane::Field& field)
    {
        const Orvane::NodeRef node = readNode();
        if (field.dataType() == Orvane::SFNODE_DT)
            static_cast<Orvane::SFNode&>(field).setNode(0.0, node.get(), Orvane::Field::LOADER_CT);
        else
            static_cast<Orvane::MFNode&>(field).addNode(0.0, node.get(), Orvane::Field::LOADER_CT);
    }

    Orvane::Context& _context;
    Orvane::Node& _scene;
    std::vector<std::string> _words;
    std::size_t _next = 0;
    std::map<std::string, Orvane::Node*> _names;
};
