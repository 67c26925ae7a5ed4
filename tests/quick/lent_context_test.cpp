// A context lent to the scene: the scene finds it new, the lender as it was.
#define GL_GLEXT_PROTOTYPES
#include <gtest/gtest.h>
// After the test library; the scene's headers bring SDL's.
#include "Marivista.h"
#include "offscreen.h"
#include "quick/LentContext.h"
#include "support/chance.h"
#include "support/clock.h"

#include <map>
#include <vector>

namespace {

constexpr int WIDTH = 320, HEIGHT = 200;

constexpr GLenum SWITCHES[] = {
    GL_ALPHA_TEST,
    GL_BLEND,
    GL_CULL_FACE,
    GL_DEPTH_TEST,
    GL_FOG,
    GL_LIGHTING,
    GL_SCISSOR_TEST,
    GL_STENCIL_TEST,
    GL_TEXTURE_2D,
    GL_POLYGON_OFFSET_FILL,
    GL_COLOR_LOGIC_OP,
    GL_DITHER,
    GL_MULTISAMPLE,
    GL_VERTEX_ARRAY,
    GL_COLOR_ARRAY,
    GL_NORMALIZE,
    GL_FRAMEBUFFER_SRGB,
};
constexpr GLenum NUMBERS[] = {
    GL_CURRENT_PROGRAM,
    GL_VERTEX_ARRAY_BINDING,
    GL_ARRAY_BUFFER_BINDING,
    GL_ELEMENT_ARRAY_BUFFER_BINDING,
    GL_PIXEL_PACK_BUFFER_BINDING,
    GL_PIXEL_UNPACK_BUFFER_BINDING,
    GL_ACTIVE_TEXTURE,
    GL_CLIENT_ACTIVE_TEXTURE,
    GL_MATRIX_MODE,
    GL_BLEND_SRC_RGB,
    GL_BLEND_DST_RGB,
    GL_BLEND_EQUATION_RGB,
    GL_DEPTH_FUNC,
    GL_DEPTH_WRITEMASK,
    GL_FRONT_FACE,
    GL_SHADE_MODEL,
    GL_UNPACK_ALIGNMENT,
    GL_UNPACK_ROW_LENGTH,
    GL_PACK_ALIGNMENT,
    GL_ALPHA_TEST_FUNC,
    GL_FOG_MODE,
    GL_FRAMEBUFFER_BINDING,
    GL_STENCIL_FUNC,
    GL_STENCIL_REF,
    GL_MODELVIEW_STACK_DEPTH,
    GL_PROJECTION_STACK_DEPTH,
    GL_ATTRIB_STACK_DEPTH,
    GL_CLIENT_ATTRIB_STACK_DEPTH,
    GL_PERSPECTIVE_CORRECTION_HINT,
    GL_RENDERBUFFER_BINDING,
};
constexpr GLenum LISTS[] = {
    GL_VIEWPORT,          GL_SCISSOR_BOX,       GL_COLOR_WRITEMASK, GL_MODELVIEW_MATRIX,
    GL_PROJECTION_MATRIX, GL_COLOR_CLEAR_VALUE, GL_CURRENT_COLOR,   GL_FOG_COLOR,
    GL_DEPTH_RANGE,       GL_POLYGON_MODE,      GL_LINE_WIDTH,      GL_DEPTH_CLEAR_VALUE,
    GL_FOG_START,         GL_FOG_END,
};

/// Everything that a page may rely on, by name.
std::map<std::pair<GLenum, int>, std::vector<float>> pageState() {
    std::map<std::pair<GLenum, int>, std::vector<float>> state;
    for (const GLenum name : SWITCHES)
        state[{name, 0}] = {static_cast<float>(glIsEnabled(name))};
    for (const GLenum name : NUMBERS) {
        GLint value = -1;
        glGetIntegerv(name, &value);
        state[{name, 0}] = {static_cast<float>(value)};
    }
    for (const GLenum name : LISTS) {
        std::vector<float> values(16);
        glGetFloatv(name, values.data());
        state[{name, 0}] = values;
    }
    GLint active = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    for (int unit = 0; unit < 4; ++unit) {
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
        for (const GLenum name : {GL_TEXTURE_BINDING_2D, GL_SAMPLER_BINDING}) {
            GLint value = -1;
            glGetIntegerv(name, &value);
            state[{name, unit}] = {static_cast<float>(value)};
        }
        GLint mode = -1;
        glGetTexEnviv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, &mode);
        state[{GL_TEXTURE_ENV_MODE, unit}] = {static_cast<float>(mode),
                                              static_cast<float>(glIsEnabled(GL_TEXTURE_2D))};
        std::vector<float> matrix(16);
        glGetFloatv(GL_TEXTURE_MATRIX, matrix.data());
        state[{GL_TEXTURE_MATRIX, unit}] = matrix;
    }
    glActiveTexture(static_cast<GLenum>(active));
    for (GLuint i = 0; i < 16; ++i) {
        GLint on = -1;
        glGetVertexAttribiv(i, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &on);
        state[{GL_VERTEX_ATTRIB_ARRAY_ENABLED, static_cast<int>(i)}] = {static_cast<float>(on)};
    }
    return state;
}

/// A state such as pages leave, and worse.
class UnrulyPage {
public:
    UnrulyPage() {
        program = glCreateProgram();
        const GLuint shader = glCreateShader(GL_FRAGMENT_SHADER);
        const char* const source = "void main() { gl_FragColor = vec4(1, 0, 1, 1); }";
        glShaderSource(shader, 1, &source, nullptr);
        glCompileShader(shader);
        glAttachShader(program, shader);
        glLinkProgram(program);
        glGenBuffers(3, buffers);
        glGenVertexArrays(1, &array);
        glGenSamplers(1, &sampler);
        glSamplerParameteri(sampler, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glGenTextures(2, textures);
        glGenBuffers(1, &unpack);
    }
    void leaveState() const {
        glUseProgram(program);
        glBindVertexArray(array);
        glBindBuffer(GL_ARRAY_BUFFER, buffers[0]);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers[1]);
        glBindBuffer(GL_PIXEL_UNPACK_BUFFER, unpack);
        for (GLuint i : {0u, 1u, 5u})
            glEnableVertexAttribArray(i);
        for (GLuint unit = 0; unit < 2; ++unit) {
            glActiveTexture(GL_TEXTURE0 + unit);
            glBindTexture(GL_TEXTURE_2D, textures[unit]);
            glBindSampler(unit, sampler);
            glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
        }
        glMatrixMode(GL_TEXTURE);
        glLoadIdentity();
        glScalef(3, 0.1f, 1);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glTranslatef(1, 2, 3);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glRotatef(10, 1, 1, 1);
        glMatrixMode(GL_PROJECTION);
        for (const GLenum on : {GL_SCISSOR_TEST, GL_BLEND, GL_CULL_FACE, GL_STENCIL_TEST,
                                GL_ALPHA_TEST, GL_POLYGON_OFFSET_FILL})
            glEnable(on);
        glScissor(3, 4, 50, 60);
        glBlendFunc(GL_DST_COLOR, GL_ONE);
        glBlendEquation(GL_FUNC_REVERSE_SUBTRACT);
        glStencilFunc(GL_NEVER, 1, 0xff);
        glAlphaFunc(GL_LESS, 0.5f);
        glDepthMask(GL_FALSE);
        glDepthFunc(GL_GREATER);
        glDepthRange(0.5, 0.6);
        glColorMask(GL_TRUE, GL_FALSE, GL_TRUE, GL_FALSE);
        glFrontFace(GL_CW);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        glPixelStorei(GL_UNPACK_ROW_LENGTH, 7);
        glColor4f(0.1f, 0.2f, 0.3f, 0.4f);
        glClearColor(0.5f, 0, 0, 0);
        glShadeModel(GL_FLAT);
    }

private:
    GLuint program, buffers[3], array, sampler, textures[2], unpack;
};

std::unique_ptr<CMarivistaScreensaver> makeScene() {
    auto scene = std::make_unique<CMarivistaScreensaver>();
    scene->wantedwssettings.soundOn = false;
    scene->wantedwssettings.camerapos = 2;
    return scene;
}

TEST(LentContext, TheLenderFindsEverythingAsItWas) {
    const OffscreenContext context(WIDTH, HEIGHT);
    ASSERT_TRUE(context.ok());
    const UnrulyPage page;
    page.leaveState();
    const auto before = pageState();
    ASSERT_NE(before.at({GL_CURRENT_PROGRAM, 0}), std::vector<float>{0});
    const auto scene = makeScene();
    {
        const LentContext lent;
        scene->start(WIDTH, HEIGHT);
        scene->updateScene();
        scene->renderScene();
    }
    for (const auto& [name, values] : pageState())
        EXPECT_EQ(before.at(name), values) << std::hex << name.first << " of " << name.second;
    {
        const LentContext lent;
        scene->cleanup();
    }
    EXPECT_EQ(pageState(), before);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
}

/// The third of three pictures, with a page's state around every one or in a context of its own.
std::vector<uint8_t> thirdPicture(bool among_a_page) {
    const OffscreenContext context(WIDTH, HEIGHT);
    EXPECT_TRUE(context.ok());
    const UnrulyPage page;
    test::setTicks(1000);
    test::seedRandom(7);
    const auto scene = makeScene();
    for (int picture = 0; picture < 3; ++picture) {
        test::advanceTicks(40);
        const auto draw = [&] {
            if (picture == 0)
                scene->start(WIDTH, HEIGHT);
            else if (among_a_page)
                scene->setViewSize(WIDTH, HEIGHT);
            scene->updateScene();
            scene->renderScene();
        };
        if (among_a_page) {
            page.leaveState();
            const LentContext lent;
            draw();
        } else {
            draw();
        }
    }
    glPushClientAttrib(GL_CLIENT_ALL_ATTRIB_BITS);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    const std::vector<uint8_t> pixels = context.read().rgb;
    glPopClientAttrib();
    scene->cleanup();
    return pixels;
}

TEST(LentContext, TheSceneLooksAsInAContextOfItsOwn) {
    const auto own = thirdPicture(false);
    const auto lent = thirdPicture(true);
    ASSERT_EQ(own.size(), lent.size());
    EXPECT_TRUE(own == lent);
}

}  // namespace
