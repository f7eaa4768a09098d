#pragma once

#include "QorRenderView.h"
#include "tinyruntime/Tiny.h"

/// A window of the tiny runtime, as the runtime announces and ends it.
struct TestWindow
{
    explicit TestWindow(Orvane::Context* context = nullptr)
        : node(context)
        , proc(&node)
    {
    }
    ~TestWindow()
    {
        if (announced)
            end();
    }

    void announce()
    {
        announced = true;
        fire(Orvane::WindowProc::_newWidget);
    }
    void end()
    {
        announced = false;
        fire(Orvane::WindowProc::_deleteWidget);
    }
    void fire(Orvane::Subject& subject, Orvane::BaseObject* second = nullptr)
    {
        subject.fire(0.0, &proc, second);
    }

    Tiny::TinyWindow node;
    Tiny::TinyWindowProc proc;
    bool announced = false;
};
