// The colour of the lava by its height, lit as the scene's first light does.
uniform vec3 crust;
uniform vec3 glow;
uniform float heat;

varying float height;
varying vec3 normal;
varying vec3 place;

void main()
{
    vec3 toLight = normalize(gl_LightSource[0].position.xyz - place * gl_LightSource[0].position.w);
    float light = 0.25 + 0.75 * max(dot(normalize(normal), toLight), 0.0);
    float melt = smoothstep(0.15, -0.2, height) * heat;
    gl_FragColor = vec4(mix(crust * light, glow, melt), 1.0);
}
