#include "CompoundFileBuilder.h"
#include "MPPCommon/storage/SSLLibrary.h"
#include "MPPCommon/storage/SSLTypes.h"
#include "StorageTestSupport.h"
#include "support/TestSupport.h"

#include <ctime>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>

namespace {

constexpr uint64_t kTicksOf1970 = 116444736000000000ULL;

// Writes a file through `fill` on its root storage and gives the bytes once the root has ended.
std::vector<unsigned char> writeFile(const std::function<void(SSLStorage&)>& fill) {
    testsupport::TempDir dir;
    const std::string path = (dir.path() / "out.mpp").string();
    {
        std::unique_ptr<SSLRoot> root = SSLRoot::forWritingToFile(path);
        EXPECT_EQ(root->lastError(), SSL_OK);
        std::unique_ptr<SSLStorage> storage = root->rootStorage();
        fill(*storage);
        root->finishWriting();
        // Only the end of the root lays out the directory and tables.
        EXPECT_NE(SSLRoot(path).lastError(), SSL_OK);
    }
    return testsupport::readFileBytes(path);
}

void writeStream(SSLStorage& storage, const std::string& name, const std::vector<unsigned char>& bytes) {
    std::unique_ptr<SSLStream> stream = storage.createChildStreamWithName(name);
    ASSERT_TRUE(stream);
    stream->writeBuffer(bytes.data(), static_cast<int32_t>(bytes.size()));
    EXPECT_EQ(stream->lastError(), SSL_OK);
}

size_t directoryEntryOffset(const std::vector<unsigned char>& file, int32_t index) {
    return CompoundFileBuilder::sectorOffset(getLE32(file, 48) + index / 4) + (index % 4) * 128;
}

TEST(SSLWriteTest, EmptyRootIsHeaderDirectoryAndFat) {
    std::vector<unsigned char> file = writeFile([](SSLStorage&) {});
    ASSERT_EQ(file.size(), 3u * 512);
    EXPECT_EQ(getLE16(file, 26), 3);
    EXPECT_EQ(getLE16(file, 28), 0xFFFE);
    EXPECT_EQ(getLE32(file, 40), 0u);
    EXPECT_EQ(getLE32(file, 44), 1u);
    EXPECT_EQ(getLE32(file, 48), 0u);
    EXPECT_EQ(getLE32(file, 56), 4096u);
    EXPECT_EQ(getLE32(file, 60), 0xFFFFFFFFu);
    EXPECT_EQ(getLE32(file, 76), 1u);
    EXPECT_EQ(getLE32(file, 80), 0xFFFFFFFFu);
    // The FAT: the directory's end of chain, its own marker, then free entries.
    EXPECT_EQ(getLE32(file, 1024), 0xFFFFFFFEu);
    EXPECT_EQ(getLE32(file, 1028), 0xFFFFFFFDu);
    EXPECT_EQ(getLE32(file, 1032), 0xFFFFFFFFu);

    OpenedFile opened = openBytes(file);
    ASSERT_TRUE(opened.storage);
    EXPECT_EQ(opened.storage->childCount(), 0);
    EXPECT_EQ(opened.storage->storageName(), "Root Entry");
}

TEST(SSLWriteTest, SmallStreamsMoveToTheMiniStream) {
    const std::vector<unsigned char> mini = patternBytes(4095, 1);
    const std::vector<unsigned char> regular = patternBytes(4096, 2);
    const std::vector<unsigned char> tiny = patternBytes(3, 3);
    std::vector<unsigned char> file = writeFile([&](SSLStorage& root) {
        writeStream(root, "Mini", mini);
        writeStream(root, "Regular", regular);
        writeStream(root, "Tiny", tiny);
    });
    // Streams close last opened first: mini sector 0 holds "Tiny", 1..64 hold "Mini".
    EXPECT_EQ(getLE64(file, directoryEntryOffset(file, 0) + 120), 65u * 64);
    EXPECT_EQ(getLE32(file, directoryEntryOffset(file, 3) + 116), 0u);
    EXPECT_EQ(getLE32(file, directoryEntryOffset(file, 1) + 116), 1u);
    EXPECT_EQ(getLE32(file, 64), 1u);
    EXPECT_EQ(readStream(file, "Mini"), mini);
    EXPECT_EQ(readStream(file, "Regular"), regular);
    EXPECT_EQ(readStream(file, "Tiny"), tiny);
}

TEST(SSLWriteTest, EmptyStreamHasNoSectors) {
    std::vector<unsigned char> file =
        writeFile([](SSLStorage& root) { ASSERT_TRUE(root.createChildStreamWithName("E")); });
    size_t entry = directoryEntryOffset(file, 1);
    EXPECT_EQ(getLE32(file, entry + 116), 0xFFFFFFFFu);
    EXPECT_EQ(getLE64(file, entry + 120), 0u);
    OpenedFile opened = openBytes(file);
    auto stream = opened.storage->childStreamWithName("E");
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->readInt(), 0);
    EXPECT_EQ(stream->lastError(), SSL_ERROR_END_OF_STREAM);
}

TEST(SSLWriteTest, NamesAreCheckedAndUnique) {
    std::vector<unsigned char> file = writeFile([](SSLStorage& root) {
        ASSERT_TRUE(root.createChildStreamWithName("Same"));
        EXPECT_EQ(root.createChildStreamWithName("SAME"), nullptr);
        EXPECT_EQ(root.lastError(), SSL_ERROR_NAME_EXISTS);
        EXPECT_EQ(root.createChildStorageWithName("same"), nullptr);
        EXPECT_EQ(root.lastError(), SSL_ERROR_NAME_EXISTS);
        EXPECT_EQ(root.createChildStreamWithName(""), nullptr);
        EXPECT_EQ(root.lastError(), SSL_ERROR_BAD_ARGUMENT);
        EXPECT_EQ(root.createChildStreamWithName(std::string(32, 'x')), nullptr);
        EXPECT_EQ(root.lastError(), SSL_ERROR_BAD_ARGUMENT);
        EXPECT_TRUE(root.createChildStreamWithName(std::string(31, 'x')));
    });
    OpenedFile opened = openBytes(file);
    ASSERT_TRUE(opened.storage);
    EXPECT_EQ(opened.storage->childCount(), 2);
}

TEST(SSLWriteTest, SiblingTreeKeepsInsertionOrderWithOneBlackRoot) {
    // Inserted in this order: "M" first, then names that sort around it by length, then case.
    std::vector<unsigned char> file = writeFile([](SSLStorage& root) {
        for (const char* name : {"M", "b", "A", "Zz", "aa", "c"}) {
            ASSERT_TRUE(root.createChildStreamWithName(name)) << name;
        }
    });
    auto link = [&](int32_t index, size_t field) {
        return static_cast<int32_t>(getLE32(file, directoryEntryOffset(file, index) + field));
    };
    auto colour = [&](int32_t index) { return file[directoryEntryOffset(file, index) + 67]; };
    // Entries 1..6 are M, b, A, Zz, aa, c.
    EXPECT_EQ(link(0, 76), 1);
    EXPECT_EQ(colour(1), 1);
    EXPECT_EQ(link(1, 68), 2); // b < M
    EXPECT_EQ(link(1, 72), 4); // Zz is longer than M
    EXPECT_EQ(link(2, 68), 3); // A < b
    EXPECT_EQ(link(2, 72), 6); // b < c < M
    EXPECT_EQ(link(4, 68), 5); // AA < ZZ
    for (int32_t i = 2; i <= 6; ++i) {
        EXPECT_EQ(colour(i), 0) << i;
    }
    OpenedFile opened = openBytes(file);
    ASSERT_EQ(opened.storage->childCount(), 6);
    // The listing is pre-order of the tree, not name order.
    std::vector<std::string> names;
    for (int32_t i = 0; i < 6; ++i) {
        names.push_back(opened.storage->childNameByIndex(i));
    }
    EXPECT_EQ(names, (std::vector<std::string>{"M", "b", "A", "c", "Zz", "aa"}));
    EXPECT_TRUE(opened.storage->childStreamWithName("ZZ"));
}

TEST(SSLWriteTest, EntryTimesAreWrittenAsTicks) {
    const int64_t before = std::time(nullptr);
    std::vector<unsigned char> file = writeFile([](SSLStorage& root) {
        writeStream(root, "S", patternBytes(10, 1));
        ASSERT_TRUE(root.createChildStorageWithName("D"));
    });
    const int64_t after = std::time(nullptr);
    for (int32_t i = 0; i < 3; ++i) {
        EXPECT_EQ(getLE64(file, directoryEntryOffset(file, i) + 108), kTicksOf1970) << i;
    }
    for (int32_t i = 1; i < 3; ++i) {
        int64_t seconds =
            static_cast<int64_t>(getLE64(file, directoryEntryOffset(file, i) + 100) / 10000000) -
            11644473600LL;
        EXPECT_GE(seconds, before);
        EXPECT_LE(seconds, after);
    }
    OpenedFile opened = openBytes(file);
    ASSERT_TRUE(opened.storage);
    EXPECT_EQ(opened.storage->childCount(), 2);
}

TEST(SSLWriteTest, PositionAtCloseDecidesTheSize) {
    const std::vector<unsigned char> data = patternBytes(1000, 4);
    std::vector<unsigned char> file = writeFile([&](SSLStorage& root) {
        auto empty = root.createChildStreamWithName("Empty");
        empty->writeBuffer(data.data(), 1000);
        EXPECT_TRUE(empty->rewind());
        auto cut = root.createChildStreamWithName("Cut");
        cut->writeBuffer(data.data(), 1000);
        EXPECT_TRUE(cut->seekFromStart(600));
        // Writing over the start keeps the bytes behind the overwritten ones.
        auto patched = root.createChildStreamWithName("Patched");
        patched->writeBuffer(data.data(), 1000);
        patched->seekFromStart(2);
        patched->writeLEword(0xBEEF);
        patched->seekFromStart(1000);
    });
    size_t entry = directoryEntryOffset(file, 1);
    EXPECT_EQ(getLE64(file, entry + 120), 0u);
    EXPECT_EQ(getLE32(file, entry + 116), 0xFFFFFFFFu);
    EXPECT_EQ(readStream(file, "Cut"), std::vector<unsigned char>(data.begin(), data.begin() + 600));
    std::vector<unsigned char> patched = data;
    patched[2] = 0xEF;
    patched[3] = 0xBE;
    EXPECT_EQ(readStream(file, "Patched"), patched);
}

TEST(SSLWriteTest, TypedValuesAndNestedStoragesRoundTrip) {
    std::vector<unsigned char> file = writeFile([](SSLStorage& root) {
        auto inner = root.createChildStorageWithName("Outer")->createChildStorageWithName("Inner");
        ASSERT_TRUE(inner);
        auto stream = inner->createChildStreamWithName("Values");
        stream->writeLEshort(-2);
        stream->writeLEword(0xFFFE);
        stream->writeLElong(-3);
        stream->writeLEdword(0xFFFFFFFD);
        stream->writeLEfloat(1.5f);
        stream->writeLEdouble(-2.25);
        stream->writeLEwchar(U'\x263A');
        EXPECT_EQ(stream->writeLEwstring(U"Hi", 0), 3u);
        EXPECT_EQ(stream->writeLEwstring(U"Wide", 2), 2u);
        stream->writeBuffer("x", -1);
        EXPECT_EQ(stream->lastError(), SSL_ERROR_BAD_ARGUMENT);
    });
    OpenedFile opened = openBytes(file);
    auto outer = opened.storage->childStorageWithName("outer");
    ASSERT_TRUE(outer);
    auto inner = outer->childStorageWithName("INNER");
    ASSERT_TRUE(inner);
    EXPECT_EQ(inner->storageName(), "Inner");
    auto stream = inner->childStreamWithName("Values");
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->readShort(), -2);
    EXPECT_EQ(stream->readUShort(), 0xFFFE);
    EXPECT_EQ(stream->readInt(), -3);
    EXPECT_EQ(stream->readULong(), 0xFFFFFFFDu);
    EXPECT_EQ(stream->readFloat(), 1.5f);
    EXPECT_EQ(stream->readDouble(), -2.25);
    EXPECT_EQ(stream->readUShort(), 0x263A);
    EXPECT_EQ(stream->readStringWithLength(10), "Hi");
    EXPECT_EQ(stream->readStringWithLength(2), "Wi");
    EXPECT_EQ(stream->bytesAvailable(), 0u);
}

TEST(SSLWriteTest, ManySmallStreamsGrowTheMiniStreamAcrossSectors) {
    std::vector<unsigned char> file = writeFile([](SSLStorage& root) {
        for (unsigned i = 0; i < 40; ++i) {
            writeStream(root, "S" + std::to_string(i), patternBytes(100 + i * 7, i));
        }
    });
    OpenedFile opened = openBytes(file);
    ASSERT_EQ(opened.storage->childCount(), 40);
    for (unsigned i = 0; i < 40; ++i) {
        EXPECT_EQ(readStream(file, "S" + std::to_string(i)), patternBytes(100 + i * 7, i)) << i;
    }
}

TEST(SSLWriteTest, LargeFilesGetADifat) {
    // 110 FAT sectors describe more than 109 * 128 sectors.
    const std::vector<unsigned char> data = patternBytes(110 * 128 * 512, 5);
    std::vector<unsigned char> file = writeFile([&](SSLStorage& root) { writeStream(root, "Big", data); });
    const uint32_t fatSectors = getLE32(file, 44);
    EXPECT_EQ(fatSectors, 111u);
    ASSERT_EQ(getLE32(file, 72), 1u);
    const uint32_t difat = getLE32(file, 68);
    const size_t difatOffset = CompoundFileBuilder::sectorOffset(difat);
    EXPECT_EQ(getLE32(file, difatOffset), getLE32(file, 76 + 4 * 108) + 1);
    EXPECT_EQ(getLE32(file, difatOffset + 8), 0xFFFFFFFFu);
    EXPECT_EQ(getLE32(file, difatOffset + 4 * 127), difat + 1);
    EXPECT_EQ(readStream(file, "Big"), data);
}

TEST(SSLWriteTest, SectorsFarIntoTheFileSwitchToVersionFour) {
    testsupport::TempDir dir;
    std::unique_ptr<_RootStorage> root;
    ASSERT_EQ(rootCreate(1, &root), SSL_OK);
    ASSERT_EQ(rootAttachFile((dir.path() / "sparse").string(), 1, root.get()), SSL_OK);
    const std::vector<unsigned char> sector(512, 0);
    // Sector n lies at (n + 1) * 512: the last one below 0x7FFF0001 keeps version 3.
    ASSERT_EQ(sectorWrite(root.get(), 0x7FFF0000 / 512 - 1, sector.data()), SSL_OK);
    EXPECT_EQ(root->header.majorVersion, 3);
    ASSERT_EQ(sectorWrite(root.get(), 0x7FFF0000 / 512, sector.data()), SSL_OK);
    EXPECT_EQ(root->header.majorVersion, 4);
    rootClose(&root);
    SSLRoot reopened((dir.path() / "sparse").string());
    EXPECT_EQ(reopened.lastError(), SSL_OK);
    std::vector<unsigned char> header(28);
    std::ifstream((dir.path() / "sparse"), std::ios::binary).read(reinterpret_cast<char*>(header.data()), 28);
    EXPECT_EQ(getLE16(header, 26), 4);
}

TEST(SSLWriteTest, UnattachedRootsWriteNothing) {
    SSLRoot root;
    ASSERT_EQ(root.lastError(), SSL_OK);
    auto stream = root.rootStorage()->createChildStreamWithName("S");
    ASSERT_TRUE(stream);
    stream->writeBuffer(std::vector<unsigned char>(600).data(), 600);
    EXPECT_EQ(stream->lastError(), SSL_ERROR_IO);
    root.startWritingToFile("");
    EXPECT_EQ(root.lastError(), SSL_ERROR_BAD_ARGUMENT);
}

TEST(SSLWriteTest, ReadOnlyFilesRefuseWrites) {
    std::vector<unsigned char> file =
        writeFile([](SSLStorage& root) { writeStream(root, "S", patternBytes(10, 1)); });
    OpenedFile opened = openBytes(file);
    EXPECT_EQ(opened.storage->createChildStreamWithName("New"), nullptr);
    EXPECT_EQ(opened.storage->lastError(), SSL_ERROR_BAD_ARGUMENT);
    auto stream = opened.storage->childStreamWithName("S");
    stream->writeLElong(1);
    EXPECT_EQ(stream->lastError(), SSL_ERROR_BAD_ARGUMENT);
}

} // namespace
