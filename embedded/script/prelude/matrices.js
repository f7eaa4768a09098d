// Square matrices, row by row, for vectors that stand in front of them. matrix[row][column] is a number.
(function (global, native) {
  'use strict';

  function rows(size, value) {
    var result = [];
    for (var r = 0; r < size; ++r) {
      result.push([]);
      for (var c = 0; c < size; ++c)
        result[r].push(value(r, c));
    }
    return result;
  }

  function identity(size) {
    return rows(size, function (r, c) { return r === c ? 1 : 0; });
  }

  function product(a, b) {
    return rows(a.length, function (r, c) {
      var sum = 0;
      for (var i = 0; i < a.length; ++i)
        sum += a[r][i] * b[i][c];
      return sum;
    });
  }

  // By elimination; null for a matrix that has no inverse.
  function inverse(m) {
    var n = m.length, a = rows(n, function (r, c) { return m[r][c]; }), result = identity(n);
    for (var c = 0; c < n; ++c) {
      var best = c;
      for (var r = c + 1; r < n; ++r)
        if (Math.abs(a[r][c]) > Math.abs(a[best][c]))
          best = r;
      if (!(Math.abs(a[best][c]) > 0))
        return null;
      var row = a[c]; a[c] = a[best]; a[best] = row;
      row = result[c]; result[c] = result[best]; result[best] = row;
      var pivot = a[c][c];
      for (var i = 0; i < n; ++i) {
        a[c][i] /= pivot;
        result[c][i] /= pivot;
      }
      for (r = 0; r < n; ++r) {
        var factor = a[r][c];
        if (r !== c && factor !== 0)
          for (i = 0; i < n; ++i) {
            a[r][i] -= factor * a[c][i];
            result[r][i] -= factor * result[c][i];
          }
      }
    }
    return result;
  }

  function determinant(m) {
    if (m.length === 1)
      return m[0][0];
    var sum = 0;
    for (var c = 0; c < m.length; ++c)
      sum += (c % 2 ? -1 : 1) * m[0][c] * determinant(minor(m, 0, c));
    return sum;
  }

  function minor(m, row, column) {
    return m.filter(function (_, r) { return r !== row; }).map(function (values) {
      return values.filter(function (_, c) { return c !== column; });
    });
  }

  // The rotation part of a matrix as three orthogonal rows, and their lengths.
  function taken(m) {
    var scale = [], axes = [];
    for (var r = 0; r < 3; ++r) {
      var row = new global.SFVec3d(m[r][0], m[r][1], m[r][2]);
      for (var i = 0; i < r; ++i)
        row = row.subtract(axes[i].multiply(axes[i].dot(row)));
      scale.push(row.length());
      axes.push(row.normalize());
    }
    if (axes[0].dot(axes[1].cross(axes[2])) < 0) {
      scale = scale.map(function (value) { return -value; });
      axes = axes.map(function (axis) { return axis.negate(); });
    }
    return {scale: scale, axes: axes};
  }

  function rotationOf(axes) {
    // With rows for the images of the axes, as a quaternion.
    var a = axes, m = [[a[0].x, a[0].y, a[0].z], [a[1].x, a[1].y, a[1].z], [a[2].x, a[2].y, a[2].z]];
    var trace = m[0][0] + m[1][1] + m[2][2];
    var x = m[1][2] - m[2][1], y = m[2][0] - m[0][2], z = m[0][1] - m[1][0];
    var sine = Math.sqrt(x * x + y * y + z * z) / 2, cosine = (trace - 1) / 2;
    if (sine > 1e-9)
      return new global.SFRotation(x / (2 * sine), y / (2 * sine), z / (2 * sine), Math.atan2(sine, cosine));
    if (cosine > 0)
      return new global.SFRotation(0, 0, 1, 0);
    var square = [(m[0][0] + 1) / 2, (m[1][1] + 1) / 2, (m[2][2] + 1) / 2];
    var big = square.indexOf(Math.max.apply(null, square)), axis = [0, 0, 0];
    axis[big] = Math.sqrt(square[big]);
    for (var i = 0; i < 3; ++i)
      if (i !== big)
        axis[i] = m[big][i] / 2 / axis[big];
    return new global.SFRotation(axis[0], axis[1], axis[2], Math.PI);
  }

  function product3(r) {
    return identity(3).map(function (unit) {
      var v = r.multVec(new global.SFVec3f(unit[0], unit[1], unit[2]));
      return [v.x, v.y, v.z];
    });
  }

  // The matrix of a transformation as a Transform node has it.
  function transformation(translation, rotation, scale, scaleOrientation, center) {
    function moved(v, sign) {
      var m = identity(4);
      m[3] = [sign * v.x, sign * v.y, sign * v.z, 1];
      return m;
    }
    function turned(r) {
      var m = identity(4), part = product3(r);
      for (var i = 0; i < 3; ++i)
        m[i] = part[i].concat(0);
      return m;
    }
    var result = identity(4);
    if (center)
      result = product(result, moved(center, -1));
    if (scale) {
      var scaled = identity(4);
      scaled[0][0] = scale.x;
      scaled[1][1] = scale.y;
      scaled[2][2] = scale.z;
      if (scaleOrientation)
        scaled = product(product(turned(scaleOrientation.inverse()), scaled), turned(scaleOrientation));
      result = product(result, scaled);
    }
    if (rotation)
      result = product(result, turned(rotation));
    if (center)
      result = product(result, moved(center, 1));
    return translation ? product(result, moved(translation, 1)) : result;
  }

  function give(target, source) {
    if (target)
      Object.keys(source).forEach(function (key) { target[key] = source[key]; });
  }

  function matrix(name, size) {
    function Matrix() {
      var values = arguments.length === 1 && typeof arguments[0] === 'object' ? arguments[0] : arguments;
      var isWhole = values.length === size * size;
      for (var r = 0; r < size; ++r) {
        this[r] = [];
        for (var c = 0; c < size; ++c)
          this[r].push(isWhole ? +values[r * size + c] : values.length === size ? +values[r][c] : r === c ? 1 : 0);
      }
    }
    function made(all) { return all ? new Matrix(all) : null; }
    var members = {
      toString: function () { return this.all().map(function (row) { return row.join(' '); }).join(' '); },
      all: function () {
        var self = this;
        return rows(size, function (r, c) { return self[r][c]; });
      },
      inverse: function () {
        var result = made(inverse(this.all()));
        if (!result)
          throw new RangeError('the matrix has no inverse');
        return result;
      },
      determinant: function () { return determinant(this.all()); },
      transpose: function () {
        var self = this;
        return made(rows(size, function (r, c) { return self[c][r]; }));
      },
      // The other matrix comes first, or last.
      multLeft: function (other) { return made(product(other.all(), this.all())); },
      multRight: function (other) { return made(product(this.all(), other.all())); },
      equals: function (other) { return this.toString() === other.toString(); }
    };
    members.multiply = members.multRight;
    Object.keys(members).forEach(function (key) {
      Object.defineProperty(Matrix.prototype, key, {value: members[key], writable: true, configurable: true});
    });
    Object.defineProperty(Matrix.prototype, 'length', {value: size});
    global[name] = Matrix;
    return Matrix;
  }

  function spatial(type) {
    var members = {
      multVecMatrix: function (v) {
        var m = this, w = v.x * m[0][3] + v.y * m[1][3] + v.z * m[2][3] + m[3][3];
        return new global.SFVec3f((v.x * m[0][0] + v.y * m[1][0] + v.z * m[2][0] + m[3][0]) / w,
                                  (v.x * m[0][1] + v.y * m[1][1] + v.z * m[2][1] + m[3][1]) / w,
                                  (v.x * m[0][2] + v.y * m[1][2] + v.z * m[2][2] + m[3][2]) / w);
      },
      multMatrixVec: function (v) {
        var m = this, w = v.x * m[3][0] + v.y * m[3][1] + v.z * m[3][2] + m[3][3];
        return new global.SFVec3f((v.x * m[0][0] + v.y * m[0][1] + v.z * m[0][2] + m[0][3]) / w,
                                  (v.x * m[1][0] + v.y * m[1][1] + v.z * m[1][2] + m[1][3]) / w,
                                  (v.x * m[2][0] + v.y * m[2][1] + v.z * m[2][2] + m[2][3]) / w);
      },
      multDirMatrix: function (v) {
        var m = this;
        return new global.SFVec3f(v.x * m[0][0] + v.y * m[1][0] + v.z * m[2][0],
                                  v.x * m[0][1] + v.y * m[1][1] + v.z * m[2][1],
                                  v.x * m[0][2] + v.y * m[1][2] + v.z * m[2][2]);
      },
      setTransform: function (translation, rotation, scale, scaleOrientation, center) {
        var all = transformation(translation, rotation, scale, scaleOrientation, center);
        for (var r = 0; r < 4; ++r)
          this[r] = all[r];
      },
      // Fills the values that are given.
      getTransform: function (translation, rotation, scale) {
        var m = this, parts = taken(m);
        give(translation, {x: m[3][0], y: m[3][1], z: m[3][2]});
        give(rotation, rotationOf(parts.axes));
        give(scale, {x: parts.scale[0], y: parts.scale[1], z: parts.scale[2]});
      }
    };
    Object.keys(members).forEach(function (key) {
      Object.defineProperty(type.prototype, key, {value: members[key], writable: true, configurable: true});
    });
  }

  ['SFMatrix3f', 'SFMatrix3d', 'X3DMatrix3'].forEach(function (name) { matrix(name, 3); });
  ['SFMatrix4f', 'SFMatrix4d', 'X3DMatrix4', 'VrmlMatrix'].forEach(function (name) { spatial(matrix(name, 4)); });
})
