// The classes of single values. The program gives them their fields "x", "r", ... where a value belongs to a
// field of a node; a value of its own has them as plain properties.
(function (global, native) {
  'use strict';

  function define(object, members) {
    Object.keys(members).forEach(function (name) {
      Object.defineProperty(object, name, {value: members[name], writable: true, configurable: true});
    });
  }

  function text(isDouble) {
    return isDouble ? String : function (number) { return String(+number.toPrecision(7)); };
  }

  // Code with each key in the place of "#".
  function each(keys, template, separator) {
    return keys.map(function (key) { return template.replace(/#/g, key); }).join(separator);
  }

  // A class whose values are made of so many numbers, of an object that has them, or of an array.
  function tuple(name, keys, initial, isDouble) {
    var code = 'return function ' + name + '(' + keys.join(',') + ') {' +
      'if (!(this instanceof ' + name + ')) return new ' + name + '(' + keys.join(',') + ');' +
      'if (typeof ' + keys[0] + ' === "object" && ' + keys[0] + ' !== null) {' +
      '  var source = ' + keys[0] + ', isArray = Array.isArray(source);' +
      keys.map(function (key, i) { return 'this.' + key + ' = +(isArray ? source[' + i + '] : source.' + key + ');'; }).join('') +
      '} else {' +
      keys.map(function (key, i) { return 'this.' + key + ' = ' + key + ' === undefined ? ' + initial[i] + ' : +' + key + ';'; }).join('') +
      '} };';
    var type = new Function(code)();
    var write = text(isDouble);
    keys.forEach(function (key, i) {
      Object.defineProperty(type.prototype, i, {
        get: function () { return this[key]; },
        set: function (value) { this[key] = value; }
      });
    });
    define(type.prototype, {
      toString: function () {
        var self = this;
        return keys.map(function (key) { return write(self[key]); }).join(' ');
      },
      equals: function (other) {
        var self = this;
        return keys.every(function (key) { return self[key] === other[key]; });
      },
      copy: function () { return new type(this); }
    });
    global[name] = type;
    return type;
  }

  function compiled(parameter, name, body) {
    return new Function('type', 'return function ' + name + '(' + parameter + ') {' + body + '};');
  }

  function vector(name, keys, isDouble) {
    var type = tuple(name, keys, keys.map(function () { return 0; }), isDouble);
    function method(parameter, body) { return compiled(parameter, '', body)(type); }
    define(type.prototype, {
      add: method('v', 'return new type(' + each(keys, 'this.# + v.#', ',') + ');'),
      subtract: method('v', 'return new type(' + each(keys, 'this.# - v.#', ',') + ');'),
      multiply: method('s', 'return new type(' + each(keys, 'this.# * s', ',') + ');'),
      divide: method('s', 'return new type(' + each(keys, 'this.# / s', ',') + ');'),
      multVec: method('v', 'return new type(' + each(keys, 'this.# * v.#', ',') + ');'),
      divVec: method('v', 'return new type(' + each(keys, 'this.# / v.#', ',') + ');'),
      negate: method('', 'return new type(' + each(keys, '-this.#', ',') + ');'),
      abs: method('', 'return new type(' + each(keys, 'Math.abs(this.#)', ',') + ');'),
      dot: method('v', 'return ' + each(keys, 'this.# * v.#', '+') + ';'),
      length: method('', 'return Math.sqrt(' + each(keys, 'this.# * this.#', '+') + ');'),
      distance: method('v', 'return this.subtract(v).length();'),
      normalize: method('', 'var l = this.length(); return l > 0 ? this.divide(l) : new type(this);'),
      lerp: method('v, t', 'return new type(' + each(keys, 'this.# + (v.# - this.#) * t', ',') + ');')
    });
    if (keys.length === 3)
      define(type.prototype, {
        cross: function (v) {
          return new type(this.y * v.z - this.z * v.y, this.z * v.x - this.x * v.z, this.x * v.y - this.y * v.x);
        }
      });
    return type;
  }

  [false, true].forEach(function (isDouble) {
    var suffix = isDouble ? 'd' : 'f';
    vector('SFVec2' + suffix, ['x', 'y'], isDouble);
    vector('SFVec3' + suffix, ['x', 'y', 'z'], isDouble);
    vector('SFVec4' + suffix, ['x', 'y', 'z', 'w'], isDouble);
  });
  var SFVec3f = global.SFVec3f;

  // ---- Colours

  function colour(name, keys, initial) {
    var type = tuple(name, keys, initial, false);
    define(type.prototype, {
      getHSV: function () {
        var max = Math.max(this.r, this.g, this.b), span = max - Math.min(this.r, this.g, this.b), hue = 0;
        if (span > 0) {
          hue = max === this.r ? (this.g - this.b) / span
            : max === this.g ? 2 + (this.b - this.r) / span : 4 + (this.r - this.g) / span;
          hue = (hue * 60 + 360) % 360;
        }
        return [hue * Math.PI / 180, max > 0 ? span / max : 0, max];
      },
      setHSV: function (hue, saturation, value) {
        var sector = ((hue * 180 / Math.PI % 360) + 360) % 360 / 60, low = Math.floor(sector), part = sector - low;
        var p = value * (1 - saturation), q = value * (1 - saturation * part);
        var t = value * (1 - saturation * (1 - part));
        var rgb = [[value, t, p], [q, value, p], [p, value, t], [p, q, value], [t, p, value], [value, p, q]][low % 6];
        this.r = rgb[0];
        this.g = rgb[1];
        this.b = rgb[2];
      }
    });
  }
  colour('SFColor', ['r', 'g', 'b'], [0, 0, 0]);
  colour('SFColorRGBA', ['r', 'g', 'b', 'a'], [0, 0, 0, 1]);

  // ---- Rotations

  // Unit quaternion of a rotation, as x, y, z, w.
  function quaternion(r) {
    var length = Math.sqrt(r.x * r.x + r.y * r.y + r.z * r.z);
    if (!(length > 0))
      return [0, 0, 0, 1];
    var s = Math.sin(r.angle / 2) / length;
    return [r.x * s, r.y * s, r.z * s, Math.cos(r.angle / 2)];
  }

  function fromQuaternion(q) {
    var s = Math.sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2]);
    return s > 1e-12 ? new SFRotation(q[0] / s, q[1] / s, q[2] / s, 2 * Math.atan2(s, q[3]))
      : new SFRotation(0, 0, 1, 0);
  }

  // The shortest way from one direction to another.
  function between(from, to) {
    var a = new SFVec3f(from).normalize(), b = new SFVec3f(to).normalize(), axis = a.cross(b), cosine = a.dot(b);
    if (axis.length() < 1e-12) {
      if (cosine >= 0)
        return [0, 0, 1, 0];
      axis = a.cross(Math.abs(a.x) < 0.9 ? new SFVec3f(1, 0, 0) : new SFVec3f(0, 1, 0));
      cosine = -1;
    }
    axis = axis.normalize();
    return [axis.x, axis.y, axis.z, Math.acos(Math.min(1, Math.max(-1, cosine)))];
  }

  var rotationBase = tuple('SFRotation', ['x', 'y', 'z', 'angle'], [0, 0, 1, 0], false);
  function isVector(value) {
    return value !== null && typeof value === 'object' && value.z !== undefined && value.angle === undefined;
  }
  function SFRotation(x, y, z, angle) {
    if (isVector(x) && isVector(y))
      return new rotationBase(between(x, y));
    if (isVector(x))
      return new rotationBase(x.x, x.y, x.z, y === undefined ? 0 : y);
    return new rotationBase(x, y, z, angle);
  }
  SFRotation.prototype = rotationBase.prototype;
  define(SFRotation.prototype, {
    constructor: SFRotation,
    getAxis: function () { return new SFVec3f(this.x, this.y, this.z); },
    setAxis: function (axis) {
      this.x = axis.x;
      this.y = axis.y;
      this.z = axis.z;
    },
    inverse: function () { return new SFRotation(this.x, this.y, this.z, -this.angle); },
    // First this rotation, then the other one.
    multiply: function (other) {
      var b = quaternion(this), a = quaternion(other);
      return fromQuaternion([
        a[3] * b[0] + a[0] * b[3] + a[1] * b[2] - a[2] * b[1],
        a[3] * b[1] - a[0] * b[2] + a[1] * b[3] + a[2] * b[0],
        a[3] * b[2] + a[0] * b[1] - a[1] * b[0] + a[2] * b[3],
        a[3] * b[3] - a[0] * b[0] - a[1] * b[1] - a[2] * b[2]]);
    },
    multVec: function (v) {
      var q = quaternion(this), u = new SFVec3f(q[0], q[1], q[2]);
      var t = u.cross(v).multiply(2);
      return new SFVec3f(v.x, v.y, v.z).add(t.multiply(q[3])).add(u.cross(t));
    },
    slerp: function (target, t) {
      var a = quaternion(this), b = quaternion(target);
      var cosine = a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3], sign = cosine < 0 ? -1 : 1;
      var angle = Math.acos(Math.min(1, Math.abs(cosine))), sine = Math.sin(angle);
      var from = sine > 1e-6 ? Math.sin((1 - t) * angle) / sine : 1 - t;
      var to = sign * (sine > 1e-6 ? Math.sin(t * angle) / sine : t);
      return fromQuaternion(a.map(function (value, i) { return value * from + b[i] * to; }));
    }
  });
  define(SFRotation.prototype, {multiVec: SFRotation.prototype.multVec});
  global.SFRotation = SFRotation;

  // ---- Images

  function SFImage(width, height, comp, array) {
    if (!(this instanceof SFImage))
      return new SFImage(width, height, comp, array);
    this.width = width === undefined ? 0 : +width;
    this.height = height === undefined ? 0 : +height;
    this.comp = comp === undefined ? 0 : +comp;
    this.array = array === undefined ? [] : array;
  }
  Object.defineProperty(SFImage.prototype, 'x', {
    get: function () { return this.width; }, set: function (value) { this.width = value; }
  });
  Object.defineProperty(SFImage.prototype, 'y', {
    get: function () { return this.height; }, set: function (value) { this.height = value; }
  });
  define(SFImage.prototype, {
    toString: function () { return [this.width, this.height, this.comp].concat([].slice.call(this.array)).join(' '); }
  });
  global.SFImage = SFImage;

  // ---- Values that the language itself has

  function plain(name, wrapper, convert) {
    global[name] = function (value) {
      var result = convert(value);
      return this instanceof global[name] ? new wrapper(result) : result;
    };
  }
  function number(value) { return value === undefined ? 0 : +value; }
  plain('SFBool', Boolean, Boolean);
  plain('SFDouble', Number, number);
  plain('SFFloat', Number, number);
  plain('SFInt32', Number, function (value) { return value | 0; });
  plain('SFString', String, function (value) { return value === undefined ? '' : String(value); });
  plain('SFTime', Number, number);
  global.TRUE = true;
  global.FALSE = false;
})
