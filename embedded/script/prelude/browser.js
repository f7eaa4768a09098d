// What scripts ask of the browser and of scenes, in the words of VRML97 and of X3D.
(function (global, native) {
  'use strict';

  function define(object, members) {
    Object.keys(members).forEach(function (name) {
      Object.defineProperty(object, name, {value: members[name], writable: true, configurable: true});
    });
  }

  function property(object, name, get, set) {
    Object.defineProperty(object, name, {get: get, set: set, enumerable: true, configurable: true});
  }

  function joined(values) {
    return [].map.call(values, String).join(' ');
  }

  function X3DRoute(fromNode, fromField, toNode, toField) {
    this.sourceNode = this.fromNode = fromNode;
    this.sourceField = this.fromField = fromField;
    this.destinationNode = this.toNode = toNode;
    this.destinationField = this.toField = toField;
  }

  function addRoute(fromNode, fromField, toNode, toField) {
    native.addRoute(fromNode, String(fromField), toNode, String(toField));
    return new X3DRoute(fromNode, String(fromField), toNode, String(toField));
  }

  function deleteRoute(route, fromField, toNode, toField) {
    if (route instanceof X3DRoute)
      native.deleteRoute(route.fromNode, route.fromField, route.toNode, route.toField);
    else
      native.deleteRoute(route, String(fromField), toNode, String(toField));
  }

  // ---- Scenes

  function X3DScene() {
    throw new TypeError('scenes are made by Browser.createX3DFromString and createX3DFromURL');
  }
  property(X3DScene.prototype, 'rootNodes',
           function () { return native.rootNodes(this); },
           function (nodes) { native.setRootNodes(this, nodes); });
  property(X3DScene.prototype, 'worldURL', function () { return native.sceneURL(this); });
  define(X3DScene.prototype, {
    getNamedNode: function (name) { return native.namedNode(this, String(name)); },
    getImportedNode: function (name) { return native.importedNode(this, String(name)); },
    updateNamedNode: function (name, node) { native.setNamedNode(this, String(name), node); },
    removeNamedNode: function (name) { native.setNamedNode(this, String(name), null); },
    createNode: function (type) { return native.createNode(this, String(type), false); },
    createProto: function (type) { return native.createNode(this, String(type), true); },
    addRootNode: function (node) { this.rootNodes.push(node); },
    removeRootNode: function (node) {
      var nodes = this.rootNodes, place = nodes.indexOf(node);
      if (place >= 0)
        nodes.splice(place, 1);
    },
    addRoute: addRoute,
    deleteRoute: deleteRoute,
    toString: function () { return '[scene ' + this.worldURL + ']'; }
  });
  X3DScene.prototype.addNamedNode = X3DScene.prototype.updateNamedNode;
  global.X3DScene = X3DScene;
  global.X3DExecutionContext = X3DScene;
  global.X3DRoute = X3DRoute;

  // ---- Constants: what the definitions of fields answer

  var constants = {};
  ['initializeOnly', 'inputOnly', 'outputOnly', 'inputOutput'].forEach(function (access) {
    constants[access] = access;
  });
  ['Bool', 'Color', 'ColorRGBA', 'Double', 'Float', 'Image', 'Int32', 'Matrix3d', 'Matrix3f', 'Matrix4d', 'Matrix4f',
   'Node', 'Rotation', 'String', 'Time', 'Vec2d', 'Vec2f', 'Vec3d', 'Vec3f', 'Vec4d', 'Vec4f'].forEach(function (type) {
    constants['SF' + type] = 'SF' + type;
    constants['MF' + type] = 'MF' + type;
  });
  global.X3DConstants = Object.freeze(constants);

  // ---- Browser

  function send(node, field, value) {
    if (node)
      node[field] = value;
  }

  var Browser = {};
  property(Browser, 'name', native.name);
  property(Browser, 'version', native.version);
  property(Browser, 'currentSpeed', native.speed);
  property(Browser, 'currentFrameRate', native.frameRate);
  property(Browser, 'description', native.description, function (text) { native.setDescription(String(text)); });
  property(Browser, 'currentScene', native.currentScene);
  property(Browser, 'currentExecutionContext', native.currentScene);
  define(Browser, {
    getName: native.name,
    getVersion: native.version,
    getCurrentSpeed: native.speed,
    getCurrentFrameRate: native.frameRate,
    getWorldURL: native.worldURL,
    getExecutionContext: native.currentScene,
    setDescription: function (text) { native.setDescription(String(text)); },
    replaceWorld: function (world) { native.replaceWorld(world); },
    loadURL: function (urls, parameters) { return native.loadURL(urls, parameters); },
    loadWorld: function (urls, parameters) { return native.loadURL(urls, parameters); },
    createVrmlFromString: function (text) { return native.nodesFromString(String(text)); },
    createX3DFromString: function (text) { return native.sceneFromString(String(text)); },
    createVrmlFromURL: function (urls, node, field) {
      var scene = native.sceneFromURL(urls);
      send(node, field, native.takeNodes(scene));
    },
    createX3DFromURL: function (urls, node, field) {
      var scene = native.sceneFromURL(urls);
      if (node)
        send(node, field, native.takeNodes(scene));
      return scene;
    },
    addRoute: addRoute,
    deleteRoute: deleteRoute,
    print: function () { native.print(0, joined(arguments)); },
    println: function () { native.print(0, joined(arguments)); },
    toString: function () { return native.name() + ' ' + native.version(); }
  });
  global.Browser = Browser;
  global.X3DBrowser = Browser;

  global.print = Browser.print;
  global.println = Browser.println;
  global.console = {
    log: function () { native.print(0, joined(arguments)); },
    info: function () { native.print(0, joined(arguments)); },
    debug: function () { native.print(3, joined(arguments)); },
    warn: function () { native.print(1, joined(arguments)); },
    error: function () { native.print(2, joined(arguments)); }
  };

  // ---- Code that is made by code has the same limits

  var makeFunction = Function;
  function GuardedFunction() {
    var parameters = [].map.call(arguments, String), body = parameters.length ? parameters.pop() : '';
    return makeFunction.apply(null, parameters.concat(native.guarded(body)));
  }
  GuardedFunction.prototype = makeFunction.prototype;
  Object.defineProperty(makeFunction.prototype, 'constructor', {value: GuardedFunction, writable: true, configurable: true});
  global.Function = GuardedFunction;
  global.eval = function (code) {
    return typeof code === 'string' ? native.evaluate(native.guarded(code)) : code;
  };
})
