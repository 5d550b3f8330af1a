#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGImageFileHandler.h>
#include <OpenSG/OSGReal16.h>

#include "support/Builders.h"
#include "support/LogCapture.h"

#include <ImfChannelList.h>
#include <ImfOutputFile.h>
#include <ImfRgbaFile.h>
#include <gtest/gtest.h>
#include <stb_image.h>
#include <stb_image_write.h>
#include <tiffio.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <list>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace osg;

namespace
{

// 3x2 RGB, top row first as files store it: red, green, blue over
// white, black, grey. The image keeps the bottom row first.
const UInt8 TopFirst[2][3][3] = {
    { { 255, 0, 0 },     { 0, 255, 0 }, { 0, 0, 255 } },
    { { 255, 255, 255 }, { 0, 0, 0 },   { 128, 128, 128 } },
};

// Files in a directory that goes when the tests end.
std::string tempFile(const std::string &name)
{
    static const testsupport::TempDir dir;
    return dir.path(name);
}

void writeBytes(const std::string &file, const std::string &bytes)
{
    std::ofstream(file, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
}

std::string topFirstBytes(void)
{
    return std::string(reinterpret_cast<const char *>(TopFirst), sizeof(TopFirst));
}

ImagePtr readImage(const std::string &file)
{
    ImagePtr image = ImageFileHandler::the().read(file.c_str());
    if(image != NullFC)
        addRefCP(image);
    return image;
}

void expectBottomRowFirstRGB(ImagePtr image)
{
    ASSERT_EQ(image->getWidth(), 3);
    ASSERT_EQ(image->getHeight(), 2);
    ASSERT_EQ(image->getPixelFormat(), UInt32(Image::OSG_RGB_PF));
    ASSERT_EQ(image->getDataType(), Image::OSG_UINT8_IMAGEDATA);
    const UInt8 *data = image->getData();
    for(int y = 0; y < 2; ++y)
        for(int x = 0; x < 3; ++x)
            for(int c = 0; c < 3; ++c)
                EXPECT_EQ(data[(y * 3 + x) * 3 + c], TopFirst[1 - y][x][c])
                    << "pixel " << x << "," << y << " channel " << c;
}

void writeTiff(const std::string &file)
{
    TIFF *tiff = TIFFOpen(file.c_str(), "w");
    ASSERT_NE(tiff, nullptr);
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 3);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 2);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    for(int y = 0; y < 2; ++y)
        TIFFWriteScanline(tiff, const_cast<UInt8 *>(&TopFirst[y][0][0]), uint32_t(y), 0);
    TIFFClose(tiff);
}

// Photoshop keeps channels in planes: all red, then all green, then blue.
std::string psdBytes(void)
{
    std::string psd("8BPS\0\1\0\0\0\0\0\0\0\3\0\0\0\2\0\0\0\3\0\x08\0\3", 26);
    psd += std::string(12, '\0') + std::string(2, '\0');
    for(int c = 0; c < 3; ++c)
        for(int y = 0; y < 2; ++y)
            for(int x = 0; x < 3; ++x)
                psd += char(TopFirst[y][x][c]);
    return psd;
}

TEST(ImageFile, ReadersKeepPixelsBottomRowFirstInRGBOrder)
{
    const auto stbWrite = [](int (*write)(const char *, int, int, int, const void *))
    {
        return [write](const std::string &file)
        { ASSERT_NE(write(file.c_str(), 3, 2, 3, TopFirst), 0); };
    };
    struct Case { const char *name; std::function<void(const std::string &)> write; };
    const Case cases[] =
    {
        { "rle.tga", stbWrite(stbi_write_tga) },
        { "b.bmp",   stbWrite(stbi_write_bmp) },
        { "c.png",   [](const std::string &f)
                     { ASSERT_NE(stbi_write_png(f.c_str(), 3, 2, 3, TopFirst, 9), 0); } },
        { "d.ppm",   [](const std::string &f) { writeBytes(f, "P6\n3 2\n255\n" + topFirstBytes()); } },
        { "e.psd",   [](const std::string &f) { writeBytes(f, psdBytes()); } },
        { "f.tif",   writeTiff },
    };
    for(const Case &tc : cases)
    {
        SCOPED_TRACE(tc.name);
        const std::string file = tempFile(tc.name);
        tc.write(file);
        ImagePtr image = readImage(file);
        ASSERT_NE(image, NullFC);
        expectBottomRowFirstRGB(image);
        subRefCP(image);
    }
}

TEST(ImageFile, GifTransparentIndexBecomesAlpha)
{
    // 1x1, palette white and black, index 0 drawn and marked transparent.
    const std::string gif("GIF89a\1\0\1\0\x80\0\0\xff\xff\xff\0\0\0!\xf9\4\1\0\0\0\0"
                          ",\0\0\0\0\1\0\1\0\0\2\2D\1\0;", 43);
    ImagePtr image = testsupport::readImageBytes("a.gif", gif);
    ASSERT_NE(image, NullFC);
    EXPECT_EQ(image->getPixelFormat(), UInt32(Image::OSG_RGBA_PF));
    ASSERT_EQ(image->getSize(), 4ul);
    EXPECT_EQ(image->getData()[3], 0);
    subRefCP(image);
}

// Radiance RGBE: (m + 0.5) / 256 * 2^(e - 128) in the format's own words;
// readers also use m / 256, so half a mantissa step is allowed.
TEST(ImageFile, RadianceIsReadAsFloatRGB)
{
    const UInt8 rgbe[2][4] = { { 128, 64, 32, 129 }, { 200, 100, 1, 131 } };
    std::string hdr = "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 2 +X 1\n";
    hdr.append(reinterpret_cast<const char *>(rgbe), sizeof(rgbe));
    ImagePtr image = testsupport::readImageBytes("a.hdr", hdr);
    ASSERT_NE(image, NullFC);
    EXPECT_EQ(image->getPixelFormat(), UInt32(Image::OSG_RGB_PF));
    EXPECT_EQ(image->getDataType(), Image::OSG_FLOAT32_IMAGEDATA);
    ASSERT_EQ(image->getSize(), 2ul * 3 * 4);
    const Real32 *pixels = reinterpret_cast<const Real32 *>(image->getData());
    for(int y = 0; y < 2; ++y)
    {
        const UInt8 *p = rgbe[1 - y];
        for(int c = 0; c < 3; ++c)
            EXPECT_NEAR(pixels[y * 3 + c], std::ldexp(p[c] + 0.5, p[3] - 136),
                        std::ldexp(0.5, p[3] - 136)) << "row " << y << " channel " << c;
    }
    subRefCP(image);
}

TEST(ImageFile, OpenEXRKeepsHalfOrFloatAndRowOrder)
{
    // 1x2: top (1, 2, 3), bottom (-0.5, 0.25, 1000); alpha 0.5 where written.
    const float top[3] = { 1.f, 2.f, 3.f }, bottom[3] = { -0.5f, 0.25f, 1000.f };
    const std::string floatFile = tempFile("float.exr");
    {
        Imf::Header header(1, 2);
        const char *names[] = { "R", "G", "B" };
        for(const char *n : names)
            header.channels().insert(n, Imf::Channel(Imf::FLOAT));
        float pixels[2][3];
        std::memcpy(pixels[0], top, sizeof(top));
        std::memcpy(pixels[1], bottom, sizeof(bottom));
        Imf::FrameBuffer frame;
        for(int c = 0; c < 3; ++c)
            frame.insert(names[c], Imf::Slice(Imf::FLOAT, reinterpret_cast<char *>(&pixels[0][c]),
                                              sizeof(pixels[0]), sizeof(pixels[0]) * 1));
        Imf::OutputFile out(floatFile.c_str(), header);
        out.setFrameBuffer(frame);
        out.writePixels(2);
    }
    const std::string halfFile = tempFile("half.exr");
    {
        Imf::Rgba pixels[2] = { Imf::Rgba(top[0], top[1], top[2], 0.5f),
                                Imf::Rgba(bottom[0], bottom[1], bottom[2], 0.5f) };
        Imf::RgbaOutputFile out(halfFile.c_str(), 1, 2, Imf::WRITE_RGBA);
        out.setFrameBuffer(pixels, 1, 1);
        out.writePixels(2);
    }

    ImagePtr floats = readImage(floatFile);
    ASSERT_NE(floats, NullFC);
    EXPECT_EQ(floats->getPixelFormat(), UInt32(Image::OSG_RGB_PF));
    ASSERT_EQ(floats->getDataType(), Image::OSG_FLOAT32_IMAGEDATA);
    const Real32 *f = reinterpret_cast<const Real32 *>(floats->getData());
    for(int c = 0; c < 3; ++c)
    {
        EXPECT_EQ(f[c], bottom[c]) << "channel " << c;
        EXPECT_EQ(f[3 + c], top[c]) << "channel " << c;
    }

    // All the values are exact in half precision.
    ImagePtr halves = readImage(halfFile);
    ASSERT_NE(halves, NullFC);
    EXPECT_EQ(halves->getPixelFormat(), UInt32(Image::OSG_RGBA_PF));
    ASSERT_EQ(halves->getDataType(), Image::OSG_FLOAT16_IMAGEDATA);
    const Real16 *h = reinterpret_cast<const Real16 *>(halves->getData());
    for(int c = 0; c < 3; ++c)
    {
        EXPECT_EQ(Real32(h[c]), bottom[c]) << "channel " << c;
        EXPECT_EQ(Real32(h[4 + c]), top[c]) << "channel " << c;
    }
    EXPECT_EQ(Real32(h[3]), 0.5f);

    subRefCP(floats);
    subRefCP(halves);
}

TEST(ImageFile, WritersProduceFilesAnotherDecoderReads)
{
    // stb_image reads them back top row first, our readers bottom row
    // first. JPEG rings at the hard edges between primaries of a 3x2 image
    // even at quality 95.
    struct Case { const char *suffix; int tolerance; };
    const Case cases[] = { { "png", 0 }, { "tga", 0 }, { "bmp", 0 }, { "jpg", 60 } };

    ImagePtr image = testsupport::held(Image::create());
    std::vector<UInt8> bottomFirst;
    for(int y = 1; y >= 0; --y)
        bottomFirst.insert(bottomFirst.end(), &TopFirst[y][0][0], &TopFirst[y][0][0] + 9);
    image->set(Image::OSG_RGB_PF, 3, 2, 1, 1, 1, 0.0, bottomFirst.data());

    for(const Case &tc : cases)
    {
        SCOPED_TRACE(tc.suffix);
        const std::string file = tempFile(std::string("w.") + tc.suffix);
        ASSERT_TRUE(image->write(file.c_str()));
        int w = 0, h = 0, n = 0;
        UInt8 *back = stbi_load(file.c_str(), &w, &h, &n, 3);
        ASSERT_NE(back, nullptr);
        EXPECT_EQ(w, 3);
        EXPECT_EQ(h, 2);
        for(int i = 0; i < 18; ++i)
            EXPECT_NEAR(back[i], (&TopFirst[0][0][0])[i], tc.tolerance) << "byte " << i;
        stbi_image_free(back);

        ImagePtr ours = readImage(file);
        ASSERT_NE(ours, NullFC);
        ASSERT_EQ(ours->getSize(), bottomFirst.size());
        for(std::size_t i = 0; i < bottomFirst.size(); ++i)
            EXPECT_NEAR(ours->getData()[i], bottomFirst[i], tc.tolerance) << "read byte " << i;
        subRefCP(ours);
    }

    // Radiance from a float image, values above one kept.
    const Real32 values[3] = { 0.5f, 2.f, 16.f };
    image->set(Image::OSG_RGB_PF, 1, 1, 1, 1, 1, 0.0,
               reinterpret_cast<const UInt8 *>(values), Image::OSG_FLOAT32_IMAGEDATA);
    const std::string hdr = tempFile("w.hdr");
    ASSERT_TRUE(image->write(hdr.c_str()));
    int w = 0, h = 0, n = 0;
    float *back = stbi_loadf(hdr.c_str(), &w, &h, &n, 3);
    ASSERT_NE(back, nullptr);
    for(int c = 0; c < 3; ++c)
        EXPECT_FLOAT_EQ(back[c], values[c]) << "channel " << c;
    stbi_image_free(back);

    // 8-bit files clamp floats; formats without a writer refuse.
    const Real32 grey[4] = { -0.5f, 0.25f, 1.f, 2.f };
    image->set(Image::OSG_L_PF, 4, 1, 1, 1, 1, 0.0,
               reinterpret_cast<const UInt8 *>(grey), Image::OSG_FLOAT32_IMAGEDATA);
    const std::string png = tempFile("clamped.png");
    ASSERT_TRUE(image->write(png.c_str()));
    UInt8 *clamped = stbi_load(png.c_str(), &w, &h, &n, 0);
    ASSERT_NE(clamped, nullptr);
    ASSERT_EQ(n, 1);
    for(int i = 0; i < 4; ++i)
        EXPECT_NEAR(clamped[i], std::min(std::max(grey[i], 0.f), 1.f) * 255.f, 0.5f) << i;
    stbi_image_free(clamped);

    testsupport::LogCapture log;
    for(const char *name : { "x.unknown", "x.dds" })
    {
        EXPECT_FALSE(image->write(tempFile(name).c_str())) << name;
        EXPECT_TRUE(log.contains(tempFile(name))) << log.text();
    }
    subRefCP(image);
}

// Odd widths leave rows unaligned; the file holds the top row first.
TEST(ImageFile, PngKeepsEveryChannelCountBothWays)
{
    const UInt32 formats[] = { Image::OSG_L_PF, Image::OSG_LA_PF, Image::OSG_RGB_PF,
                               Image::OSG_RGBA_PF };
    std::mt19937 rng(7);
    for(int components = 1; components <= 4; ++components)
    {
        SCOPED_TRACE(components);
        const int w = 5, h = 3, rowBytes = w * components;
        std::vector<UInt8> pixels(std::size_t(rowBytes * h));
        for(UInt8 &p : pixels)
            p = UInt8(rng());
        ImagePtr image = testsupport::held(Image::create());
        image->set(formats[components - 1], w, h, 1, 1, 1, 0.0, pixels.data());
        const std::string file = tempFile("round.png");
        ASSERT_TRUE(image->write(file.c_str()));

        int fw = 0, fh = 0, fn = 0;
        UInt8 *rows = stbi_load(file.c_str(), &fw, &fh, &fn, 0);
        ASSERT_NE(rows, nullptr);
        EXPECT_EQ(fw, w);
        EXPECT_EQ(fh, h);
        EXPECT_EQ(fn, components);
        EXPECT_EQ(std::memcmp(rows, &pixels[std::size_t((h - 1) * rowBytes)], std::size_t(rowBytes)), 0);
        stbi_image_free(rows);

        ImagePtr back = readImage(file);
        ASSERT_NE(back, NullFC);
        EXPECT_EQ(back->getPixelFormat(), formats[components - 1]);
        ASSERT_EQ(back->getSize(), pixels.size());
        EXPECT_EQ(std::memcmp(back->getData(), pixels.data(), pixels.size()), 0);
        subRefCP(image);
        subRefCP(back);
    }
}

TEST(ImageFile, BadFilesAreRefusedWithAWarningNamingFileAndReason)
{
    struct Case { const char *name; const char *bytes; std::size_t size; const char *reason; };
    const Case cases[] =
    {
        { "missing.png",   NULL,                       0,  "no such file" },
        { "empty.tga",     "",                         0,  "empty" },
        { "cut.png",       "\x89PNG\r\n\x1a\n\0\0",    10, "end of data" },
        { "ascii.ppm",     "P3\n1 1\n255\n1 2 3\n",    17, "P5, P6" },
        { "cut.bmp",       "BM\x10\0\0\0",             6,  "image/bmp" },
        { "unknown.xyz",   "abc",                      3,  "unknown image format" },
        { "cut.tif",       "II*\0\x08\0\0\0",          8,  "image/tiff" },
        { "cut.exr",       "\x76\x2f\x31\x01\2\0\0\0", 8,  "image/x-exr" },
        { "cut.jpg",       "\xff\xd8\xff\xe0\0\x10JFIF", 10, NULL },
    };
    for(const Case &tc : cases)
    {
        SCOPED_TRACE(tc.name);
        const std::string file = tempFile(tc.name);
        if(tc.bytes != NULL)
            writeBytes(file, std::string(tc.bytes, tc.size));
        testsupport::LogCapture log;
        ImagePtr image = testsupport::held(Image::create());
        EXPECT_FALSE(image->read(file.c_str()));
        EXPECT_TRUE(log.contains(file)) << log.text();
        EXPECT_TRUE(tc.reason == NULL || log.contains(tc.reason)) << log.text();
        subRefCP(image);
    }
}

TEST(ImageFileHandler, TypesAreFoundByMimeTypeSuffixAndContent)
{
    ImageFileHandler &handler = ImageFileHandler::the();
    struct Case { const char *mime; const char *suffix; };
    const Case cases[] =
    {
        { "image/png", "png" },   { "image/jpeg", "JPG" },         { "image/jpeg", "jpeg" },
        { "image/x-targa", "tga" }, { "image/bmp", "bmp" },        { "image/gif", "gif" },
        { "image/x-photoshop", "psd" }, { "image/x-portable-bitmap", "ppm" },
        { "image/x-hdr", "hdr" }, { "image/tiff", "tiff" },        { "image/x-exr", "exr" },
        { "image/x-dds", "DDS" },
    };
    for(const Case &tc : cases)
    {
        SCOPED_TRACE(tc.suffix);
        ImageFileType *bySuffix = handler.getFileType(NULL, (std::string("a/b.") + tc.suffix).c_str());
        ASSERT_NE(bySuffix, nullptr);
        EXPECT_STREQ(bySuffix->getMimeType(), tc.mime);
        EXPECT_EQ(handler.getFileType(tc.mime), bySuffix);
        EXPECT_EQ(handler.determineMimetypeFromSuffix(tc.suffix), tc.mime);
    }
    // 1.8 adds "image/" to a bare subtype and drops parameters.
    EXPECT_STREQ(handler.getFileType(" PNG ; q=1")->getMimeType(), "image/png");
    EXPECT_EQ(handler.getFileType(NULL, "dir.png/file"), nullptr);

    std::list<const Char8 *> writable;
    handler.getSuffixList(writable, ImageFileType::OSG_WRITE_SUPPORTED);
    std::set<std::string> names(writable.begin(), writable.end());
    for(const char *suffix : { "png", "jpg", "tga", "bmp", "hdr" })
        EXPECT_EQ(names.count(suffix), 1u) << suffix;
    EXPECT_EQ(names.count("dds"), 0u);

    std::istringstream gif("GIF89a...");
    EXPECT_EQ(handler.determineMimetypeFromStream(gif), "image/gif");
    EXPECT_EQ(gif.tellg(), 0);
}

TEST(ImageFileHandler, ContentWinsOverALyingSuffixWithAWarning)
{
    const std::string file = tempFile("png-really.jpg");
    ASSERT_NE(stbi_write_png(file.c_str(), 3, 2, 3, TopFirst, 9), 0);
    testsupport::LogCapture log;
    ImagePtr image = readImage(file);
    ASSERT_NE(image, NullFC);
    expectBottomRowFirstRGB(image);
    EXPECT_TRUE(log.contains(file) && log.contains("image/png")) << log.text();
    subRefCP(image);
}

} // namespace
