// Reading and writing keys of private-profile files, in memory and on disk, byte for byte.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "authoring/profile_file.h"
#include "temp_dir.h"

using namespace halvane;
using namespace halvane::testing;

namespace {
const std::filesystem::path kData = std::filesystem::path(HALVANE_TEST_DATA) / "profile";
}

// clang-format off
// Rows read or write key "k" of section "S" unless they name others.
TEST(ProfileFile, ReadFindsTheFirstMatchingKeyOfTheFirstMatchingSection) {
    const struct { std::string content, want; const char* section = "S"; const char* key = "k"; } rows[] = {
        {"[S]\r\nk=v\r\n", "v"}, {"[SeTTings]\r\nTARGETS=5", "5", "settings", "Targets"}, {"[S]\nk=v\n", "v"},
        {"[S]\r\nk \t=\t v \t\r\n", "v"}, {"  [S]  \r\nk=v", "v"}, {"[ S ] ; comment\r\nk=v", "v"},
        {"[S]\r\nk=a=b", "a=b"}, {"[S]\r\nk=\"a b\"", "a b"}, {"[S]\r\nk=\"a\"b\"", "a\"b"},
        {"[S]\r\nk=\"", "\""}, {"[S]\r\nk=1\r\nk=2\r\n", "1"}, {"[S]\r\nx=1\r\n[s]\r\nk=2\r\n", ""},
        {"[S]\r\n;k=1\r\n  ;k=2\r\n", ""}, {"k=1\r\n[S]\r\n", ""}, {"[T]\r\nk=1\r\n[S]\r\n", ""},
        {"[S\r\nk=1\r\n", ""}, {"\xEF\xBB\xBF[S]\r\nk=1", "1"},
        // A key's leading blank is part of it: " 7" and "7" are different keys.
        {"[Serial Num]\r\n 7=12345\r\n", "12345", "Serial Num", " 7"},
        {"[Serial Num]\r\n 7=12345\r\n", "", "Serial Num", "7"},
        {"[Serial Num]\r\n7=12345\r\n", "", "Serial Num", " 7"},
        {"[S]\r\nk=" + std::string(300, 'x'), std::string(255, 'x')},
    };
    for (const auto& r : rows) EXPECT_EQ(profileRead(r.content, r.section, r.key), r.want) << r.content;
}

TEST(ProfileFile, WriteChangesOnlyTheKeysLine) {
    const struct { const char* content; const char* want; const char* section = "S"; const char* key = "k"; }
    rows[] = {
        {"", "[S]\r\nk=v\r\n"}, {"x=1", "x=1\r\n[S]\r\nk=v\r\n"}, {"x=1\n", "x=1\n[S]\r\nk=v\r\n"},
        {"[S]", "[S]\r\nk=v\r\n"},
        {"[S]\r\na=1\r\n\r\n\r\n[T]\r\nk=1\r\n", "[S]\r\na=1\r\nk=v\r\n\r\n\r\n[T]\r\nk=1\r\n"},
        {"[S]\r\n;c\r\n", "[S]\r\n;c\r\nk=v\r\n", "s"}, {"[S]\r\nK = old \r\n", "[S]\r\nk=v\r\n"},
        {"[S]\nk=old\nz=1\n", "[S]\nk=v\nz=1\n"}, {"[S]\r\nk=old", "[S]\r\nk=v"},
        {"[S]\r\nk=1\r\n[s]\r\nk=2\r\n", "[S]\r\nk=v\r\n[s]\r\nk=2\r\n"},
        {"\xEF\xBB\xBF[S]\r\nk=1\r\n", "\xEF\xBB\xBF[S]\r\nk=v\r\n"},
        {"[S]\r\n 7=1\r\n", "[S]\r\n 7=1\r\n7=v\r\n", "S", "7"},
    };
    for (const auto& r : rows) {
        const std::string out = profileWrite(r.content, r.section, r.key, "v");
        EXPECT_EQ(out, r.want) << r.content;
        EXPECT_EQ(profileRead(out, r.section, r.key), "v") << r.content;
    }
}

TEST(ProfileFile, GoldenEditsKeepEveryOtherByte) {
    TempDir dir;
    const auto file = dir / "hvn.cfg";
    std::filesystem::copy_file(kData / "edited_before.cfg", file);
    EXPECT_EQ(ReadIni(file, "settings", "TARGETS"), "12");

    const struct { const char* section; const char* key; const char* value; } writes[] = {
        {"Settings", "Targets", "20"}, {"SETTINGS", "cols", "8"}, {"Settings", "ComPort", " 4"},
        {"Group Num", " 3", " 1"}, {"Serial Num", " 7", "54321"}, {"Last", "tail2", "y"},
        {"Ethernet", "EthernetIP", "169.254.0.10"},
    };
    for (const auto& w : writes) ASSERT_TRUE(WriteIni(file, w.section, w.key, w.value)) << w.key;
    EXPECT_EQ(readBytes(file), readBytes(kData / "edited_after.cfg"));
    EXPECT_EQ(ReadIni(file, "Serial Num", "7"), "999");
    // No temporary file is left beside it.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);
}

TEST(ProfileFile, FileFormsCreateKeepModeAndRefuseWhatTheyCannotWrite) {
    TempDir dir;
    EXPECT_EQ(ReadIni(dir / "missing.cfg", "S", "k"), "");

    const auto created = dir / "new" / "hvn.cfg";
    ASSERT_TRUE(WriteIni(created, "S", "k", "1"));
    EXPECT_EQ(readBytes(created), "[S]\r\nk=1\r\n");

    const auto file = dir / "mode.cfg";
    writeBytes(file, "[S]\r\nk=1\r\n");
    ::chmod(file.c_str(), 0640);
    ASSERT_TRUE(WriteIni(file, "S", "k", "2"));
    struct stat st {};
    ::stat(file.c_str(), &st);
    EXPECT_EQ(st.st_mode & 07777, 0640u);

    // Through a symbolic link, the file it names is edited and the link stays.
    const auto link = dir / "link.cfg";
    std::filesystem::create_symlink(file, link);
    ASSERT_TRUE(WriteIni(link, "S", "k", "3"));
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(readBytes(file), "[S]\r\nk=3\r\n");

    // A folder where the file should be, or a plain file where its folder should be.
    std::filesystem::create_directory(dir / "folder.cfg");
    EXPECT_FALSE(WriteIni(dir / "folder.cfg", "S", "k", "1"));
    EXPECT_FALSE(WriteIni(file / "hvn.cfg", "S", "k", "1"));
    EXPECT_EQ(readBytes(file), "[S]\r\nk=3\r\n");
}

TEST(ProfileFile, ReadOnlyFolderFailsAndKeepsTheFile) {
    if (::geteuid() == 0) GTEST_SKIP() << "root may write into a read-only folder";
    TempDir dir;
    const auto file = dir / "hvn.cfg";
    writeBytes(file, "[S]\r\nk=1\r\n");
    ::chmod(dir.path().c_str(), 0555);
    EXPECT_FALSE(WriteIni(file, "S", "k", "2"));
    EXPECT_EQ(readBytes(file), "[S]\r\nk=1\r\n");
}
// clang-format on
