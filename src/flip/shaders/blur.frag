#version 440

// One direction of a Gaussian blur (standard deviation 5 texels, 29 taps). Each fetch but the middle one stands between
// two texels, so that linear filtering weighs both. Afterwards the colour is made stronger and the veil laid over it.

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    vec2 stride;
    vec4 veil; // premultiplied
    float saturation;
};

layout(binding = 1) uniform sampler2D source;

const float kMiddleWeight = 0.080083;
const float kOffsets[7] = float[](1.485004, 3.465057, 5.445221, 7.425557, 9.406127, 11.386986, 13.368188);
const float kWeights[7] = float[](0.152423, 0.125043, 0.087553, 0.052322, 0.026686, 0.011617, 0.004316);

void main()
{
    vec3 color = texture(source, qt_TexCoord0).rgb * kMiddleWeight;
    for (int i = 0; i < 7; ++i) {
        vec2 offset = stride * kOffsets[i];
        color += (texture(source, qt_TexCoord0 + offset).rgb + texture(source, qt_TexCoord0 - offset).rgb) * kWeights[i];
    }
    float luminance = dot(color, vec3(0.2126, 0.7152, 0.0722));
    vec3 vivid = clamp(mix(vec3(luminance), color, saturation), 0.0, 1.0);
    fragColor = vec4(vivid * (1.0 - veil.a) + veil.rgb, 1.0) * qt_Opacity;
}
