// The one shader: position, colour and texture coordinate in, a texel times a colour
// out, with the alpha test. One text for OpenGL 3.3 and OpenGL ES 3.0.
#include <cstdio>

#include "Files/Graphics_API/GL_State.h"

namespace {

constexpr char kHeadGL[] = "#version 330 core\n";
constexpr char kHeadES[] = "#version 300 es\nprecision highp float;\nprecision highp int;\n";

// Colours come as blue, green, red, alpha. Depth is kept in range instead of clipped.
constexpr char kVertexText[] =
    "in vec3 position;\n"
    "in vec4 colour;\n"
    "in vec2 coordinate;\n"
    "uniform mat4 transform;\n"
    "out vec4 blended;\n"
    "flat out vec4 single;\n"
    "out vec2 place;\n"
    "void main()\n"
    "{\n"
    "    gl_Position = transform * vec4(position, 1.0);\n"
    "    gl_Position.z = clamp(gl_Position.z, -gl_Position.w, gl_Position.w);\n"
    "    blended = colour.bgra;\n"
    "    single = colour.bgra;\n"
    "    place = coordinate;\n"
    "}\n";

// Comparisons by their numbers: 1 never, 2 less, 3 equal, 4 less or equal, 5 greater,
// 6 not equal, 7 greater or equal, 8 always.
constexpr char kFragmentText[] =
    "in vec4 blended;\n"
    "flat in vec4 single;\n"
    "in vec2 place;\n"
    "uniform sampler2D picture;\n"
    "uniform bool textured;\n"
    "uniform bool modulate;\n"
    "uniform bool flatShade;\n"
    "uniform int alphaFunction;\n"
    "uniform int alphaReference;\n"
    "out vec4 result;\n"
    "bool passes(int value)\n"
    "{\n"
    "    if (alphaFunction == 1) return false;\n"
    "    if (alphaFunction == 2) return value < alphaReference;\n"
    "    if (alphaFunction == 3) return value == alphaReference;\n"
    "    if (alphaFunction == 4) return value <= alphaReference;\n"
    "    if (alphaFunction == 5) return value > alphaReference;\n"
    "    if (alphaFunction == 6) return value != alphaReference;\n"
    "    if (alphaFunction == 7) return value >= alphaReference;\n"
    "    return true;\n"
    "}\n"
    "void main()\n"
    "{\n"
    "    vec4 tint = flatShade ? single : blended;\n"
    "    vec4 texel = textured ? texture(picture, place) : vec4(1.0);\n"
    "    result = modulate || !textured ? texel * tint : texel;\n"
    "    if (!passes(int(result.a * 255.0 + 0.5))) discard;\n"
    "}\n";

GLuint Compile(GLenum kind, const char* text, char* error, int32_t errorSize)
{
    const GLuint shader = glCreateShader(kind);
    const char* parts[2] = {g_GL->es ? kHeadES : kHeadGL, text};
    glShaderSource(shader, 2, parts, nullptr);
    glCompileShader(shader);
    GLint done = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &done);
    if (done) return shader;
    glGetShaderInfoLog(shader, errorSize, nullptr, error);
    glDeleteShader(shader);
    return 0;
}

}  // namespace

bool GL_MakeProgram(char* error, int32_t errorSize)
{
    const GLuint vertex = Compile(GL_VERTEX_SHADER, kVertexText, error, errorSize);
    const GLuint fragment =
        vertex ? Compile(GL_FRAGMENT_SHADER, kFragmentText, error, errorSize) : 0;
    if (!fragment) {
        glDeleteShader(vertex);
        return false;
    }
    GLProgram& made = g_GL->program;
    made.program = glCreateProgram();
    glAttachShader(made.program, vertex);
    glAttachShader(made.program, fragment);
    glBindAttribLocation(made.program, 0, "position");
    glBindAttribLocation(made.program, 1, "colour");
    glBindAttribLocation(made.program, 2, "coordinate");
    glLinkProgram(made.program);
    glDeleteShader(vertex);
    glDeleteShader(fragment);
    GLint done = 0;
    glGetProgramiv(made.program, GL_LINK_STATUS, &done);
    if (!done) {
        glGetProgramInfoLog(made.program, errorSize, nullptr, error);
        return false;
    }
    made.transform = glGetUniformLocation(made.program, "transform");
    made.textured = glGetUniformLocation(made.program, "textured");
    made.modulate = glGetUniformLocation(made.program, "modulate");
    made.flatShade = glGetUniformLocation(made.program, "flatShade");
    made.alphaFunction = glGetUniformLocation(made.program, "alphaFunction");
    made.alphaReference = glGetUniformLocation(made.program, "alphaReference");
    glUseProgram(made.program);
    glUniform1i(glGetUniformLocation(made.program, "picture"), 0);
    return true;
}

void GL_FreeProgram()
{
    if (g_GL->program.program) glDeleteProgram(g_GL->program.program);
    g_GL->program = {};
}
