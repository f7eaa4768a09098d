#pragma once

#include "ScenePlace.h"
#include <QByteArray>
#include <QString>
#include <vector>

/// Code that was written and not applied, as it is kept beside a copy of its scene.
struct KeptCode
{
    ScenePlace place; ///< of the node whose code it is
    QString text;

    /// The form in which they are kept; empty for none.
    static QByteArray toBytes(const std::vector<KeptCode>& codes);
    /// What bytes of that form hold; nothing when they have another one.
    static std::vector<KeptCode> fromBytes(const QByteArray& bytes);
};
