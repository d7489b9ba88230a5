#include "platform/disk/windows_names.h"

#include <gtest/gtest.h>

#include "base/text.h"

namespace skv::test {

TEST(WindowsNamesTest, PathsResolveBeforeTheyReachTheDisk) {
  const DrivePath current{'d', "Work/Now"};
  for (const char* row :
       {"C:\\FS2002\\aircraft\\|C:\\FS2002\\aircraft", "c:/FS2002/aircraft|C:\\FS2002\\aircraft",
        "C:\\|C:\\", "C:|C:\\", "D:|D:\\Work\\Now", "d:x|D:\\Work\\Now\\x", "C:x|C:\\x",
        "..\\x|D:\\Work\\x", "\\x|D:\\x", "C:\\..\\..\\..\\etc|C:\\etc",
        "C:\\a\\..\\..\\b\\.\\c|C:\\b\\c", "C:\\a\\.. \\b|C:\\b", "C:\\a\\\\b|C:\\a\\b",
        "C:\\a. . \\b.txt...|C:\\a\\b.txt", "C:\\a\\.hidden|C:\\a\\.hidden", "C:\\ a|C:\\ a",
        "C:\\com10\\nullify\\auxiliary.txt|C:\\com10\\nullify\\auxiliary.txt",
        "C:\\\xff\xfe.txt|C:\\\xff\xfe.txt"})
    EXPECT_EQ(parseWindowsPath(split(row, '|')[0], current).value().text(), split(row, '|')[1]);
}

TEST(WindowsNamesTest, WhatWindowsRefusesIsRefused) {
  for (const char* path : {"C:\\a:b",      "C:\\a\\b:stream\\c",
                           "C:\\*.txt",    "C:\\a?",
                           "C:\\a\"b",     "C:\\<a",
                           "C:\\a>b",      "C:\\a|b",
                           "C:\\a\x01",    "C:\\a\tb",
                           "1:\\a",        "\xc3\xa4:\\a",
                           "C:\\nul",      "C:\\Con.txt",
                           "C:\\aux\\x",   "C:\\x\\LPT1.tar.gz",
                           "C:\\com9",     "C:\\com\xc2\xb2.txt",
                           "C:\\PRN .txt", "C:\\CONIN$",
                           "C:\\conout$"}) {
    EXPECT_EQ(parseWindowsPath(path, {}).outcome().number(), err::badFileName) << path;
  }
  EXPECT_EQ(parseWindowsPath(std::string_view("C:\\a\0b", 6), {}).outcome().number(),
            err::badFileName);
  EXPECT_EQ(parseWindowsPath("\\\\server\\share\\a", {}).outcome().number(), err::pathNotFound);
  EXPECT_EQ(parseWindowsPath("", {}).outcome().number(), err::fileNotFound);
}

}  // namespace skv::test
