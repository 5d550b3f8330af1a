#include <OpenSG/OSGImage.h>

#include "support/LogCapture.h"

#include <gtest/gtest.h>
#include <png.h>
#include <jpeglib.h>

#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

using namespace osg;

namespace
{

ImagePtr newImage(void)
{
    ImagePtr image = Image::create();
    addRefCP(image);
    return image;
}

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

// Reads a PNG with libpng itself, top row first.
std::vector<UInt8> readPngRows(const std::string &file, png_uint_32 format,
                               png_uint_32 &width, png_uint_32 &height)
{
    png_image png;
    std::memset(&png, 0, sizeof(png));
    png.version = PNG_IMAGE_VERSION;
    if(!png_image_begin_read_from_file(&png, file.c_str()))
        return std::vector<UInt8>();
    png.format = format;
    std::vector<UInt8> rows(PNG_IMAGE_SIZE(png));
    png_image_finish_read(&png, NULL, rows.data(), 0, NULL);
    width  = png.width;
    height = png.height;
    return rows;
}

std::string tempPng(const char *name)
{
    return testing::TempDir() + "lumora_image_" + name + ".png";
}

TEST(Image, PngRoundTripKeepsBytesAndFormat)
{
    struct Case { const char *name; UInt32 pf; UInt32 components; png_uint_32 pngFormat; };
    const Case cases[] =
    {
        { "l",    Image::OSG_L_PF,    1, PNG_FORMAT_GRAY },
        { "la",   Image::OSG_LA_PF,   2, PNG_FORMAT_GA   },
        { "rgb",  Image::OSG_RGB_PF,  3, PNG_FORMAT_RGB  },
        { "rgba", Image::OSG_RGBA_PF, 4, PNG_FORMAT_RGBA },
    };
    std::mt19937 rng(7);

    for(const Case &tc : cases)
    {
        SCOPED_TRACE(tc.name);
        // Odd width: rows are not 4-byte aligned.
        const Int32 w = 5, h = 3;
        std::vector<UInt8> pixels(w * h * tc.components);
        for(UInt8 &p : pixels)
            p = UInt8(rng());

        ImagePtr image = newImage();
        image->set(tc.pf, w, h, 1, 1, 1, 0.0, pixels.data());
        const std::string file = tempPng(tc.name);
        ASSERT_TRUE(image->write(file.c_str()));

        // The image holds the bottom row first, the file the top row.
        png_uint_32 fw = 0, fh = 0;
        std::vector<UInt8> rows = readPngRows(file, tc.pngFormat, fw, fh);
        ASSERT_EQ(fw, png_uint_32(w));
        ASSERT_EQ(fh, png_uint_32(h));
        const size_t rowBytes = w * tc.components;
        EXPECT_EQ(std::memcmp(rows.data(), &pixels[(h - 1) * rowBytes], rowBytes), 0);

        ImagePtr back = newImage();
        ASSERT_TRUE(back->read(file.c_str()));
        EXPECT_EQ(back->getPixelFormat(), tc.pf);
        EXPECT_EQ(back->getWidth(), w);
        EXPECT_EQ(back->getHeight(), h);
        ASSERT_EQ(back->getSize(), pixels.size());
        EXPECT_EQ(std::memcmp(back->getData(), pixels.data(), pixels.size()), 0);

        subRefCP(image);
        subRefCP(back);
        std::remove(file.c_str());
    }
}

TEST(Image, FloatImagesAreClampedWhenWritten)
{
    const Real32 values[] = { -0.5f, 0.25f, 1.f, 2.f };
    ImagePtr image = newImage();
    image->set(Image::OSG_L_PF, 4, 1, 1, 1, 1, 0.0,
               reinterpret_cast<const UInt8 *>(values), Image::OSG_FLOAT32_IMAGEDATA);
    const std::string file = tempPng("float");
    ASSERT_TRUE(image->write(file.c_str()));

    ImagePtr back = newImage();
    ASSERT_TRUE(back->read(file.c_str()));
    ASSERT_EQ(back->getSize(), 4ul);
    for(int i = 0; i < 4; ++i)
    {
        const Real32 clamped = std::min(std::max(values[i], 0.f), 1.f);
        EXPECT_NEAR(back->getData()[i], clamped * 255.f, 0.5f) << "pixel " << i;
    }
    subRefCP(image);
    subRefCP(back);
    std::remove(file.c_str());
}

// Writes an 8x8 RGB JPEG, top row first: the top half `top`, the bottom
// half `bottom`.
void writeJpeg(const std::string &file, const UInt8 top[3], const UInt8 bottom[3])
{
    jpeg_compress_struct info;
    jpeg_error_mgr       err;
    info.err = jpeg_std_error(&err);
    jpeg_create_compress(&info);
    FILE *out = std::fopen(file.c_str(), "wb");
    ASSERT_NE(out, nullptr);
    jpeg_stdio_dest(&info, out);
    info.image_width      = 8;
    info.image_height     = 8;
    info.input_components = 3;
    info.in_color_space   = JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 100, TRUE);
    jpeg_start_compress(&info, TRUE);
    UInt8 row[8 * 3];
    while(info.next_scanline < info.image_height)
    {
        const UInt8 *color = info.next_scanline < 4 ? top : bottom;
        for(int x = 0; x < 8; ++x)
            std::memcpy(&row[x * 3], color, 3);
        JSAMPROW rows[1] = { row };
        jpeg_write_scanlines(&info, rows, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    std::fclose(out);
}

TEST(Image, JpegIsReadBottomRowFirst)
{
    const UInt8 top[3]    = { 250, 20, 20 };
    const UInt8 bottom[3] = { 20, 20, 250 };
    const std::string file = testing::TempDir() + "image-test.jpeg";
    writeJpeg(file, top, bottom);

    ImagePtr image = newImage();
    ASSERT_TRUE(image->read(file.c_str()));
    EXPECT_EQ(image->getPixelFormat(), UInt32(Image::OSG_RGB_PF));
    EXPECT_EQ(image->getWidth(), 8);
    EXPECT_EQ(image->getHeight(), 8);
    // Lossy even at quality 100, and chroma is subsampled: a few steps off.
    const UInt8 *first = image->getData();
    const UInt8 *last  = image->getData() + (8 * 8 - 1) * 3;
    for(int c = 0; c < 3; ++c)
    {
        EXPECT_NEAR(first[c], bottom[c], 8) << "channel " << c;
        EXPECT_NEAR(last[c],  top[c],    8) << "channel " << c;
    }
    subRefCP(image);
    std::remove(file.c_str());
}

TEST(Image, BrokenJpegIsRefusedWithAWarning)
{
    const std::string file = testing::TempDir() + "image-test-broken.jpg";
    {
        std::FILE *out = std::fopen(file.c_str(), "wb");
        ASSERT_NE(out, nullptr);
        const UInt8 header[] = { 0xff, 0xd8, 0xff, 0xe0, 0x00, 0x10, 'J', 'F', 'I', 'F' };
        std::fwrite(header, 1, sizeof(header), out);
        std::fclose(out);
    }
    ImagePtr image = newImage();
    testsupport::LogCapture log;
    EXPECT_FALSE(image->read(file.c_str()));
    EXPECT_TRUE(log.contains(file)) << log.text();
    subRefCP(image);
    std::remove(file.c_str());
}

TEST(Image, UnsupportedFilesAreRefusedWithAWarning)
{
    ImagePtr image = newImage();
    image->set(Image::OSG_RGB_PF, 2, 2);
    const std::string unknown = testing::TempDir() + "x.unknown";
    const std::string dds     = testing::TempDir() + "x.dds";
    const std::string missing = testing::TempDir() + "missing.png";
    testsupport::LogCapture log;
    EXPECT_FALSE(image->write(unknown.c_str()));
    EXPECT_FALSE(image->write(dds.c_str()));
    EXPECT_FALSE(image->read(missing.c_str()));
    EXPECT_TRUE(log.contains(unknown)) << log.text();
    EXPECT_TRUE(log.contains(dds)) << log.text();
    EXPECT_TRUE(log.contains(missing)) << log.text();
    subRefCP(image);
}

} // namespace
