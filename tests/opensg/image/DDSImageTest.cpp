#include <OpenSG/OSGImage.h>

#include "support/Builders.h"
#include "support/DDSFile.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

using namespace osg;

namespace
{

ImagePtr readDDS(const std::string &name, const std::string &bytes)
{
    return testsupport::readImageBytes("dds-" + name, bytes);
}

// One 4x4 block whose rows 0..3 (top first) carry the values 1..4: colour
// index bytes, DXT3's 16-bit alpha rows, DXT5's 12-bit alpha index rows.
std::string block(int blockBytes, bool dxt5, UInt8 tag)
{
    std::string colour = { char(tag), 0, 0, 0, 1, 2, 3, 4 };
    if(blockBytes == 8)
        return colour;
    std::string alpha(8, '\0');
    if(dxt5)
    {
        unsigned long long rows = 0;
        for(int r = 0; r < 4; ++r)
            rows |= (unsigned long long)(0x111 * (r + 1)) << (12 * r);
        for(int b = 0; b < 6; ++b)
            alpha[2 + b] = char(rows >> (8 * b));
    }
    else
    {
        for(int r = 0; r < 4; ++r)
            alpha[2 * r] = alpha[2 * r + 1] = char(0x11 * (r + 1));
    }
    return alpha + colour;
}

// The row values of a block as stored, top row first in the file.
std::vector<int> blockRows(const UInt8 *b, int blockBytes, bool dxt5)
{
    std::vector<int> rows;
    const UInt8 *colour = blockBytes == 8 ? b : b + 8;
    for(int r = 0; r < 4; ++r)
        rows.push_back(colour[4 + r]);
    if(blockBytes == 16 && dxt5)
    {
        unsigned long long bits = 0;
        for(int i = 0; i < 6; ++i)
            bits |= (unsigned long long)b[2 + i] << (8 * i);
        for(int r = 0; r < 4; ++r)
            rows.push_back(int((bits >> (12 * r)) & 0xfff) / 0x111);
    }
    else if(blockBytes == 16)
    {
        for(int r = 0; r < 4; ++r)
            rows.push_back(b[2 * r] / 0x11);
    }
    return rows;
}

TEST(DDSImage, CompressedBlocksStayCompressedWithTheirMipmaps)
{
    struct Case { const char *fourCC; UInt32 format; int blockBytes; };
    const Case cases[] =
    {
        { "DXT1", Image::OSG_RGB_DXT1,  8 },
        { "DXT3", Image::OSG_RGBA_DXT3, 16 },
        { "DXT5", Image::OSG_RGBA_DXT5, 16 },
    };
    for(const Case &tc : cases)
    {
        SCOPED_TRACE(tc.fourCC);
        const bool dxt5 = tc.format == Image::OSG_RGBA_DXT5;
        // 8x8 with levels 8x8 (2x2 blocks), 4x4, 2x2, 1x1: a level under
        // four texels still takes a whole block. Level 0's blocks are
        // tagged 1, 2 (top row) and 3, 4 (bottom row).
        std::string payload;
        for(UInt8 tag = 1; tag <= 4; ++tag)
            payload += block(tc.blockBytes, dxt5, tag);
        for(UInt8 tag = 5; tag <= 7; ++tag)
            payload += block(tc.blockBytes, dxt5, tag);

        ImagePtr image = readDDS(std::string("a-") + tc.fourCC + ".dds",
                                 ddsFile(8, 8, 4, tc.fourCC, payload));
        ASSERT_NE(image, NullFC);
        EXPECT_EQ(image->getPixelFormat(), tc.format);
        EXPECT_EQ(image->getWidth(), 8);
        EXPECT_EQ(image->getHeight(), 8);
        EXPECT_EQ(image->getMipMapCount(), 4);
        EXPECT_EQ(image->getSize(), 7ul * tc.blockBytes);
        ASSERT_EQ(image->getPixel().size(), payload.size());
        const unsigned long levelOffsets[4] = { 0, 4, 5, 6 };
        for(UInt32 level = 0; level < 4; ++level)
            EXPECT_EQ(image->getData(level) - image->getData(),
                      long(levelOffsets[level] * tc.blockBytes)) << "level " << level;

        // Bottom row first: the bottom blocks come first, each turned over.
        const UInt8 expectedTags[4] = { 3, 4, 1, 2 };
        for(int b = 0; b < 4; ++b)
        {
            const UInt8 *stored = image->getData() + b * tc.blockBytes;
            EXPECT_EQ(stored[tc.blockBytes - 8], expectedTags[b]) << "block " << b;
            std::vector<int> rows = blockRows(stored, tc.blockBytes, dxt5);
            for(std::size_t r = 0; r < rows.size(); ++r)
                EXPECT_EQ(rows[r], 4 - int(r % 4)) << "block " << b << " row " << r;
        }
        // The 2x2 level keeps two valid rows, swapped; the 1x1 one stays.
        std::vector<int> two = blockRows(image->getData(2), tc.blockBytes, dxt5);
        EXPECT_EQ(two[0], 2);
        EXPECT_EQ(two[1], 1);
        std::vector<int> one = blockRows(image->getData(3), tc.blockBytes, dxt5);
        EXPECT_EQ(one[0], 1);
        subRefCP(image);
    }
}

TEST(DDSImage, UncompressedBytesAreKeptBottomRowFirst)
{
    // 1x2 BGRA: top texel (1, 2, 3, 4), bottom (5, 6, 7, 8) as stored.
    struct Case { UInt32 redMask; UInt32 format; };
    const Case cases[] = { { 0xff0000, Image::OSG_BGRA_PF }, { 0xff, Image::OSG_RGBA_PF } };
    for(const Case &tc : cases)
    {
        SCOPED_TRACE(tc.format);
        ImagePtr image = readDDS("b.dds", ddsFile(1, 2, 1, nullptr,
                                                  std::string("\1\2\3\4\5\6\7\x08", 8),
                                                  32, tc.redMask));
        ASSERT_NE(image, NullFC);
        EXPECT_EQ(image->getPixelFormat(), tc.format);
        ASSERT_EQ(image->getSize(), 8ul);
        const UInt8 expected[8] = { 5, 6, 7, 8, 1, 2, 3, 4 };
        EXPECT_EQ(std::vector<UInt8>(image->getData(), image->getData() + 8),
                  std::vector<UInt8>(expected, expected + 8));
        subRefCP(image);
    }
}

TEST(DDSImage, UnsupportedOrShortFilesAreRefusedWithAWarning)
{
    struct Case { const char *name; std::string bytes; const char *reason; };
    const Case cases[] =
    {
        { "dx10.dds",  ddsFile(4, 4, 1, "DX10", std::string(16, '\0')), "unsupported pixel format" },
        { "short.dds", ddsFile(8, 8, 4, "DXT1", std::string(8, '\0')),   "ends inside" },
        { "head.dds",  std::string("DDS \x7c\0\0\0", 8),                 "not a DDS file" },
    };
    for(const Case &tc : cases)
    {
        SCOPED_TRACE(tc.name);
        testsupport::LogCapture log;
        ImagePtr image = readDDS(tc.name, tc.bytes);
        EXPECT_EQ(image, NullFC);
        EXPECT_TRUE(log.contains(tc.name) && log.contains(tc.reason)) << log.text();
    }
}

} // namespace
