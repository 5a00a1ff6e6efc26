#version 440

// The blurred desktop, stretched over the view and darkened by the shadow.

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float shade;
};

layout(binding = 1) uniform sampler2D source;

void main()
{
    fragColor = vec4(texture(source, qt_TexCoord0).rgb * (1.0 - shade), 1.0) * qt_Opacity;
}
