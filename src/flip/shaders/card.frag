#version 440

// The picture of the canvas on the card's own ground. It covers what is behind it whole, so it can be drawn without
// blending, and the backdrop under it is never shaded.

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    vec4 ground;
    float shade;
};

layout(binding = 1) uniform sampler2D source;

void main()
{
    vec4 picture = texture(source, qt_TexCoord0);
    vec3 color = picture.rgb + ground.rgb * (1.0 - picture.a);
    fragColor = vec4(color * (1.0 - shade), 1.0) * qt_Opacity;
}
