#include <OpenSG/OSGImage.h>

#include "support/Builders.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

using namespace osg;

namespace
{

ImagePtr newImage(void) { return testsupport::held(Image::create()); }

TEST(Image, BytesPerPixelFollowFormatAndType)
{
    struct Format { UInt32 pf; UInt32 components; };
    struct Type   { Int32 type; UInt32 bytes; };
    const Format formats[] =
    {
        { Image::OSG_A_PF, 1 }, { Image::OSG_I_PF, 1 }, { Image::OSG_L_PF, 1 },
        { Image::OSG_LA_PF, 2 }, { Image::OSG_RGB_PF, 3 }, { Image::OSG_BGR_PF, 3 },
        { Image::OSG_RGBA_PF, 4 }, { Image::OSG_BGRA_PF, 4 },
    };
    const Type types[] =
    {
        { Image::OSG_UINT8_IMAGEDATA, 1 },   { Image::OSG_UINT16_IMAGEDATA, 2 },
        { Image::OSG_UINT32_IMAGEDATA, 4 },  { Image::OSG_FLOAT16_IMAGEDATA, 2 },
        { Image::OSG_FLOAT32_IMAGEDATA, 4 }, { Image::OSG_INT16_IMAGEDATA, 2 },
        { Image::OSG_INT32_IMAGEDATA, 4 },
    };

    ImagePtr image = newImage();
    for(const Format &f : formats)
    {
        for(const Type &t : types)
        {
            SCOPED_TRACE(testing::Message() << "format 0x" << std::hex << f.pf
                                            << " type 0x" << t.type);
            EXPECT_TRUE(image->set(f.pf, 5, 3, 2, 1, 1, 0.0, NULL, t.type));
            EXPECT_EQ(image->getBpp(), f.components * t.bytes);
            EXPECT_EQ(image->getComponents(), f.components);
            EXPECT_EQ(image->getSize(), 5ul * 3 * 2 * f.components * t.bytes);
            EXPECT_EQ(image->getPixel().size(), image->getSize());
        }
    }
    subRefCP(image);
}

TEST(Image, FormatsOutsideTheTableGetNoStorage)
{
    ImagePtr image = newImage();
    EXPECT_FALSE(image->set(GL_DEPTH_COMPONENT, 16, 16, 1, 1, 1, 0.0, NULL, GL_FLOAT));
    EXPECT_EQ(image->getSize(), 0ul);
    EXPECT_EQ(image->getData(), nullptr);
    EXPECT_EQ(image->getWidth(), 16);
    subRefCP(image);
}

TEST(Image, SizesSumMipmapLevelsAndMultiplyFramesAndSides)
{
    ImagePtr image = newImage();
    // 8x4 RGB, 4 levels: 8x4, 4x2, 2x1, 1x1.
    image->set(Image::OSG_RGB_PF, 8, 4, 1, 4, 2, 0.0, NULL,
               Image::OSG_UINT8_IMAGEDATA, true, 6);
    const unsigned long levels[] = { 8 * 4 * 3, 4 * 2 * 3, 2 * 1 * 3, 1 * 1 * 3 };
    const unsigned long side = levels[0] + levels[1] + levels[2] + levels[3];

    EXPECT_EQ(image->getSize(false, false, false), levels[0]);
    EXPECT_EQ(image->getSize(true,  false, false), side);
    EXPECT_EQ(image->getSize(true,  true,  false), side * 2);
    EXPECT_EQ(image->getSize(),                    side * 2 * 6);

    // Per frame, sides follow each other; per side, its levels.
    const UInt8 *base = image->getData();
    EXPECT_EQ(image->getData(2, 0, 0) - base, long(levels[0] + levels[1]));
    EXPECT_EQ(image->getData(0, 0, 3) - base, long(3 * side));
    EXPECT_EQ(image->getData(1, 1, 2) - base, long(6 * side + 2 * side + levels[0]));
    subRefCP(image);
}

TEST(Image, SetCopiesDataAndClearDataFreesIt)
{
    const UInt8 pixels[] = { 1, 2, 3, 4, 5, 6, 7, 8 };
    ImagePtr image = newImage();
    ASSERT_TRUE(image->set(Image::OSG_LA_PF, 2, 2, 1, 1, 1, 0.0, pixels));
    EXPECT_EQ(std::memcmp(image->getData(), pixels, sizeof(pixels)), 0);
    EXPECT_TRUE(image->hasAlphaChannel());

    ImagePtr copy = newImage();
    EXPECT_TRUE(copy->set(image));
    EXPECT_EQ(std::memcmp(copy->getData(), pixels, sizeof(pixels)), 0);

    image->clearData();
    EXPECT_EQ(image->getData(), nullptr);
    EXPECT_EQ(image->getSize(), sizeof(pixels));
    subRefCP(image);
    subRefCP(copy);
}

TEST(Image, SetSubDataWritesTheRegion)
{
    ImagePtr image = newImage();
    image->set(Image::OSG_L_PF, 4, 3);
    const UInt8 block[] = { 10, 11, 20, 21 };   // 2x2, bottom row first
    ASSERT_TRUE(image->setSubData(1, 1, 0, 2, 2, 1, block));

    const UInt8 *p = image->getData();
    const UInt8 expected[12] = { 0, 0, 0, 0,  0, 10, 11, 0,  0, 20, 21, 0 };
    EXPECT_EQ(std::memcmp(p, expected, sizeof(expected)), 0);

    testsupport::LogCapture log;
    EXPECT_FALSE(image->setSubData(3, 0, 0, 2, 1, 1, block));
    subRefCP(image);
}

// 1.8's conversions: a lone channel fills every channel, alpha too; colour
// turns grey by the mean of red, green and blue, rounded down, and that mean
// is also the alpha RGB gets.
TEST(Image, ReformatConvertsAs18Does)
{
    const UInt8 rgb[] = { 10, 20, 31, 200, 100, 0 }, rgba[] = { 10, 20, 31, 7, 200, 100, 0, 9 },
                la[] = { 5, 250, 6, 251 };
    const struct { UInt32 from; const UInt8 *src; UInt32 to; std::vector<UInt8> expected; } cases[] = {
        { Image::OSG_RGB_PF,  rgb,  Image::OSG_L_PF,    { 20, 100 } },
        { Image::OSG_RGB_PF,  rgb,  Image::OSG_LA_PF,   { 20, 20, 100, 100 } },
        { Image::OSG_RGB_PF,  rgb,  Image::OSG_RGBA_PF, { 10, 20, 31, 20, 200, 100, 0, 100 } },
        { Image::OSG_RGBA_PF, rgba, Image::OSG_A_PF,    { 7, 9 } },
        { Image::OSG_RGBA_PF, rgba, Image::OSG_LA_PF,   { 20, 7, 100, 9 } },
        { Image::OSG_RGBA_PF, rgba, Image::OSG_RGB_PF,  { 10, 20, 31, 200, 100, 0 } },
        { Image::OSG_BGRA_PF, rgba, Image::OSG_RGBA_PF, { 31, 20, 10, 7, 0, 100, 200, 9 } },
        { Image::OSG_LA_PF,   la,   Image::OSG_A_PF,    { 250, 251 } },
        { Image::OSG_LA_PF,   la,   Image::OSG_RGBA_PF, { 5, 5, 5, 250, 6, 6, 6, 251 } },
        { Image::OSG_L_PF,    la,   Image::OSG_RGBA_PF, { 5, 5, 5, 5, 250, 250, 250, 250 } },
    };
    for(const auto &c : cases)
    {
        ImagePtr image = newImage(), out = newImage();
        image->set(c.from, 2, 1, 1, 1, 1, 0.0, c.src);
        ASSERT_TRUE(image->reformat(Image::PixelFormat(c.to), out)) << c.from << " to " << c.to;
        EXPECT_EQ(out->getPixelFormat(), c.to);
        EXPECT_EQ(std::vector<UInt8>(out->getData(), out->getData() + out->getSize()), c.expected)
            << c.from << " to " << c.to;
        subRefCP(image);
        subRefCP(out);
    }

    // In place; and a pair 1.8 leaves alone is refused, the image kept.
    ImagePtr image = newImage();
    image->set(Image::OSG_RGB_PF, 2, 1, 1, 1, 1, 0.0, rgb);
    ASSERT_TRUE(image->reformat(Image::OSG_L_PF));
    EXPECT_EQ(image->getData()[1], 100);
    testsupport::LogCapture log;
    EXPECT_FALSE(image->reformat(Image::OSG_BGR_PF));
    EXPECT_TRUE(log.contains("Image::reformat"));
    EXPECT_EQ(image->getPixelFormat(), UInt32(Image::OSG_L_PF));
    subRefCP(image);
}

// Scaling takes the texel at the scaled-down position, rounded down; each
// mip-map level averages the two (or four) texels it folds, dropping the last
// of an odd size.
TEST(Image, ScaleTakesTheNearestTexelAndMipmapsAverage)
{
    const UInt8 pixels[] = { 0, 10, 20, 30,  40, 50, 60, 70 };   // 4 x 2, bottom row first
    ImagePtr image = newImage(), out = newImage();
    image->set(Image::OSG_L_PF, 4, 2, 1, 1, 1, 0.0, pixels);
    auto bytes = [](ImagePtr i) { return std::vector<UInt8>(i->getData(), i->getData() + i->getSize()); };

    ASSERT_TRUE(image->scale(3, 1, 1, out));
    EXPECT_EQ(bytes(out), (std::vector<UInt8>{ 0, 10, 20 }));
    ASSERT_TRUE(image->scale(8, 3, 1, out));
    EXPECT_EQ(bytes(out), (std::vector<UInt8>{ 0, 0, 10, 10, 20, 20, 30, 30,  0, 0, 10, 10, 20, 20, 30, 30,
                                                40, 40, 50, 50, 60, 60, 70, 70 }));

    ASSERT_TRUE(image->createMipmap(-1, out));
    EXPECT_EQ(out->getMipMapCount(), 3);
    EXPECT_EQ(bytes(out), (std::vector<UInt8>{ 0, 10, 20, 30, 40, 50, 60, 70,  25, 45,  35 }));

    const UInt8 odd[] = { 9, 20, 100 };
    image->set(Image::OSG_L_PF, 3, 1, 1, 1, 1, 0.0, odd);
    ASSERT_TRUE(image->createMipmap());                          // in place
    EXPECT_EQ(bytes(image), (std::vector<UInt8>{ 9, 20, 100, 14 }));
    ASSERT_TRUE(image->scale(6));                                // every level, in place
    EXPECT_EQ(bytes(image), (std::vector<UInt8>{ 9, 9, 20, 20, 100, 100,  14, 14, 14 }));
    subRefCP(image);
    subRefCP(out);
}

} // namespace
