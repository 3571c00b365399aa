#include "CompoundFileBuilder.h"
#include "MPPCommon/storage/SSLTypes.h"
#include "StorageTestSupport.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

namespace {

// A file whose root holds the one stream "Data".
std::vector<unsigned char> fileWithStream(const std::vector<unsigned char>& bytes,
                                          uint16_t majorVersion = 3) {
    CompoundFileBuilder builder;
    builder.majorVersion = majorVersion;
    builder.entry(0).child = builder.addStream(u"Data", bytes);
    return builder.build();
}

int32_t openError(std::vector<unsigned char> bytes) {
    return SSLRoot::rootWithBytes(std::move(bytes))->lastError();
}

TEST(SSLReadTest, RefusesWhatIsNoCompoundFile) {
    std::vector<unsigned char> good = fileWithStream(patternBytes(100, 1));
    EXPECT_EQ(openError({}), SSL_ERROR_EMPTY_FILE);
    EXPECT_EQ(openError(std::vector<unsigned char>(good.begin(), good.begin() + 75)),
              SSL_ERROR_NOT_COMPOUND_FILE);
    std::vector<unsigned char> badSignature = good;
    badSignature[7] = 0;
    EXPECT_EQ(openError(badSignature), SSL_ERROR_NOT_COMPOUND_FILE);
    std::vector<unsigned char> badOrder = good;
    putLE16(badOrder, 28, 0);
    EXPECT_EQ(openError(badOrder), SSL_ERROR_NOT_COMPOUND_FILE);
    // Sector sizes that no reader could use, or that would cost more memory than the file justifies.
    for (auto [shift, miniShift] : {std::pair{31, 6}, std::pair{6, 6}, std::pair{9, 10}}) {
        std::vector<unsigned char> badShift = good;
        putLE16(badShift, 30, static_cast<uint16_t>(shift));
        putLE16(badShift, 32, static_cast<uint16_t>(miniShift));
        EXPECT_EQ(openError(badShift), SSL_ERROR_NOT_COMPOUND_FILE) << shift << " " << miniShift;
    }
    std::vector<unsigned char> otherOrder = good;
    putLE16(otherOrder, 28, 0xFFFF);
    EXPECT_EQ(openError(otherOrder), SSL_OK);
}

TEST(SSLReadTest, MissingFileGivesNoRootAndNoStorage) {
    testsupport::TempDir dir;
    SSLRoot missing((dir.path() / "absent.mpp").string());
    EXPECT_EQ(missing.lastError(), SSL_ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(missing.rootStorage(), nullptr);
    EXPECT_EQ(missing.lastError(), SSL_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(SSLRoot(dir.path().string()).lastError(), SSL_ERROR_FILE_NOT_FOUND);
}

TEST(SSLReadTest, OpensFromDiskLikeFromMemory) {
    testsupport::TempDir dir;
    std::vector<unsigned char> data = patternBytes(5000, 2);
    testsupport::writeFileBytes(dir.path() / "f.mpp", fileWithStream(data));
    SSLRoot root((dir.path() / "f.mpp").string());
    ASSERT_EQ(root.lastError(), SSL_OK);
    EXPECT_EQ(root.sectorSize(), 512u);
    auto stream = root.rootStorage()->childStreamWithName("Data");
    ASSERT_TRUE(stream);
    EXPECT_EQ(readRest(*stream), data);
}

TEST(SSLReadTest, StreamsBelowTheCutoffLieInTheMiniStream) {
    for (size_t size : {1u, 64u, 65u, 4095u, 4096u, 9000u}) {
        std::vector<unsigned char> data = patternBytes(size, static_cast<unsigned>(size));
        EXPECT_EQ(readStream(fileWithStream(data), "Data"), data) << size;
    }
}

TEST(SSLReadTest, VersionThreeIgnoresTheUpperHalfOfSizes) {
    std::vector<unsigned char> data = patternBytes(5000, 3);
    CompoundFileBuilder builder;
    builder.entry(0).child = builder.addStream(u"Data", data);
    std::vector<unsigned char> file = builder.build();
    putLE32(file, builder.entryOffset(1) + 124, 0xDEADBEEF);
    EXPECT_EQ(readStream(file, "Data"), data);

    // Version 4 counts all eight bytes: that size is more than the file can hold.
    putLE16(file, 26, 4);
    OpenedFile opened = openBytes(file);
    ASSERT_TRUE(opened.storage);
    EXPECT_EQ(opened.storage->childStreamWithName("Data"), nullptr);
    EXPECT_EQ(opened.storage->lastError(), SSL_ERROR_BAD_CHAIN);
}

TEST(SSLReadTest, BrokenDirectoryLinksAreRefused) {
    struct Case {
        const char* what;
        int32_t left;
        int32_t right;
        int32_t siblingLeft;
    };
    // Entry 1 is the root's child, entry 2 another stream.
    for (const Case& c : {Case{"left link -2", -2, -1, -1}, Case{"link behind the table", 4, -1, -1},
                          Case{"link to itself", 1, -1, -1}, Case{"cycle through a sibling", 2, -1, 1},
                          Case{"sibling reached twice", 2, 2, -1}}) {
        CompoundFileBuilder builder;
        builder.entry(0).child = builder.addStream(u"A", patternBytes(10, 1));
        int32_t sibling = builder.addStream(u"BB", patternBytes(10, 2));
        builder.entry(1).left = c.left;
        builder.entry(1).right = c.right;
        builder.entry(sibling).left = c.siblingLeft;
        EXPECT_EQ(openError(builder.build()), SSL_ERROR_BAD_DIRECTORY) << c.what;
    }
}

TEST(SSLReadTest, BrokenChainsAreRefused) {
    // A directory chain that loops.
    CompoundFileBuilder looping;
    looping.entry(0).child = looping.addStream(u"Data", patternBytes(10, 1));
    std::vector<unsigned char> file = looping.build();
    uint32_t directory = looping.firstDirectorySector();
    putLE32(file, CompoundFileBuilder::sectorOffset(looping.fatSectors()[0]) + 4 * directory, directory);
    EXPECT_EQ(openError(file), SSL_ERROR_BAD_CHAIN);

    // Headers that claim more FAT or DIFAT sectors than the file holds end before allocating them.
    std::vector<unsigned char> huge = fileWithStream(patternBytes(10, 1));
    putLE32(huge, 44, 0x7FFFFFFF);
    EXPECT_EQ(openError(huge), SSL_ERROR_BAD_CHAIN);
    huge = fileWithStream(patternBytes(10, 1));
    putLE32(huge, 72, 0x00FFFFFF);
    EXPECT_EQ(openError(huge), SSL_ERROR_BAD_CHAIN);

    // A stream chain that leaves the table.
    CompoundFileBuilder leaving;
    leaving.entry(0).child = leaving.addStream(u"Data", patternBytes(5000, 1));
    leaving.fat[3] = 0x00100000;
    OpenedFile opened = openBytes(leaving.build());
    ASSERT_TRUE(opened.storage);
    EXPECT_EQ(opened.storage->childStreamWithName("Data"), nullptr);
    EXPECT_EQ(opened.storage->lastError(), SSL_ERROR_BAD_CHAIN);
}

TEST(SSLReadTest, FatSectorsBeyondTheHeaderComeFromTheDifat) {
    for (uint32_t fatSectors : {109u, 110u, 237u, 238u}) {
        CompoundFileBuilder builder;
        builder.minFatSectors = fatSectors;
        std::vector<unsigned char> data = patternBytes(6000, 4);
        builder.entry(0).child = builder.addStream(u"Data", data);
        std::vector<unsigned char> file = builder.build();
        EXPECT_EQ(builder.difatSectors().size(), fatSectors <= 109 ? 0u : fatSectors <= 236 ? 1u : 2u);
        EXPECT_EQ(readStream(file, "Data"), data) << fatSectors;
        if (fatSectors > 109) {
            // The last FAT sector number listed in the DIFAT is read: point it outside the file.
            uint32_t last = builder.difatSectors().back();
            uint32_t slot = (fatSectors - 110) % 127;
            putLE32(file, CompoundFileBuilder::sectorOffset(last) + 4 * slot, 0x00FFFFFF);
            EXPECT_EQ(openError(file), SSL_ERROR_IO) << fatSectors;
        }
    }
}

TEST(SSLReadTest, TruncatedFilesReadAsFarAsTheyGo) {
    std::vector<unsigned char> data = patternBytes(5000, 5);
    CompoundFileBuilder builder;
    builder.entry(0).child = builder.addTailStream(u"Data", data);
    std::vector<unsigned char> file = builder.build();
    const size_t lastSectorStart = file.size() - 512;

    // Cut inside the last sector: the read reaches as far as the file goes and succeeds.
    OpenedFile inside =
        openBytes(std::vector<unsigned char>(file.begin(), file.begin() + lastSectorStart + 100));
    ASSERT_TRUE(inside.storage);
    auto stream = inside.storage->childStreamWithName("Data");
    ASSERT_TRUE(stream);
    std::vector<unsigned char> read = readRest(*stream);
    EXPECT_EQ(stream->lastError(), SSL_OK);
    ASSERT_EQ(read.size(), data.size());
    EXPECT_TRUE(std::equal(data.begin(), data.begin() + 4608 + 100, read.begin()));

    // Cut at the sector boundary: the last sector can't be read at all.
    OpenedFile boundary = openBytes(std::vector<unsigned char>(file.begin(), file.begin() + lastSectorStart));
    ASSERT_TRUE(boundary.storage);
    stream = boundary.storage->childStreamWithName("Data");
    ASSERT_TRUE(stream);
    std::vector<unsigned char> buffer(data.size());
    EXPECT_EQ(stream->readBytes(5000, buffer.data()), -1);
    EXPECT_EQ(stream->lastError(), SSL_ERROR_IO);
    EXPECT_EQ(stream->position(), 4608u);
}

} // namespace
