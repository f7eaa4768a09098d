#pragma once

#include "OSGMatrix.h"
#include "OSGVector.h"

namespace osg {

class Line;

/// A bounding volume. Empty: bounds nothing yet, and the first point that extends it defines it. Infinite:
/// bounds everything. Valid: up to date with what it bounds. Static: not to be recomputed by its owner.
/// A fresh volume is empty and valid.
class OSG_BASE_DLLMAPPING Volume
{
public:
    virtual ~Volume();

    bool isEmpty() const { return has(EMPTY); }
    bool isValid() const { return has(VALID); }
    bool isStatic() const { return has(STATIC); }
    bool isInfinite() const { return has(INFINITE); }

    /// Empty and infinite exclude each other: setting one clears the other.
    void setEmpty(bool on = true) { set(EMPTY, on, INFINITE); }
    void setInfinite(bool on = true) { set(INFINITE, on, EMPTY); }
    void setValid(bool on = true) { set(VALID, on); }
    void setStatic(bool on = true) { set(STATIC, on); }

    virtual void getCenter(Pnt3f& center) const = 0;

    /// Content in cubic units; 0 when empty, Inf when infinite.
    virtual Real32 getScalarVolume() const = 0;

    /// The corners of the axis-parallel box around the volume. Infinite gives NegInf and Inf, empty the
    /// origin.
    virtual void getBounds(Pnt3f& min, Pnt3f& max) const = 0;

    /// Grows to hold the point, or the whole other volume. An empty volume adds nothing, an infinite one
    /// makes this one infinite.
    virtual void extendBy(const Pnt3f& point) = 0;
    virtual void extendBy(const Volume& volume) = 0;

    /// Whether the point lies inside or on the surface.
    virtual bool intersect(const Pnt3f& point) const = 0;

    /// Whether the ray passes through, see Line::intersect.
    virtual bool intersect(const Line& line, Real32& enter, Real32& exit) const = 0;
    bool intersect(const Line& line) const;

    /// Whether the boxes around both volumes touch.
    bool intersect(const Volume& volume) const;

    /// Becomes a volume of its own kind that holds the transformed one. Empty and infinite stay so.
    virtual void transform(const Matrix& matrix) = 0;

protected:
    enum State : UInt8 { EMPTY = 1, VALID = 2, STATIC = 4, INFINITE = 8 };

    Volume() = default;
    Volume(const Volume&) = default;
    Volume& operator=(const Volume&) = default;

    virtual UInt8 state() const { return _state; }
    virtual void setState(UInt8 state) { _state = state; }

    /// The answer of getBounds for a volume that is empty or infinite; false for all others.
    bool getSpecialBounds(Pnt3f& min, Pnt3f& max) const;

private:
    friend class DynamicVolume;

    bool has(State flag) const { return (state() & flag) != 0; }
    void set(State flag, bool on, int excluded = 0);

    UInt8 _state = EMPTY | VALID;
};

} // namespace osg
