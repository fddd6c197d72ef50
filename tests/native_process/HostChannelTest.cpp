// Lines from the host and answers to it, over real descriptors.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include "NativeProcess/HostChannel.h"

namespace {

std::size_t largest_block = std::numeric_limits<std::size_t>::max();

}  // namespace

void* operator new(std::size_t size) {
  void* const block = size <= largest_block ? std::malloc(size) : nullptr;
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return size <= largest_block ? std::malloc(size) : nullptr;
}

void operator delete(void* block) noexcept {
  std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
  std::free(block);
}

namespace {

using Ravik::HostChannel;
using Lines = std::vector<std::string>;

Lines ReadAll(int descriptor) {
  HostChannel host(descriptor, -1);
  Lines lines;
  for (std::string line; host.ReadLine(line);) lines.push_back(line);
  std::string line;
  EXPECT_FALSE(host.ReadLine(line)) << "the end stays the end";
  return lines;
}

Lines ReadFile(const std::string& content) {
  std::FILE* const file = std::tmpfile();
  std::fwrite(content.data(), 1, content.size(), file);
  std::rewind(file);
  Lines lines = ReadAll(fileno(file));
  std::fclose(file);
  return lines;
}

TEST(HostChannel, ReadsLinesOfAnyLengthAndContent) {
  EXPECT_EQ(ReadFile(""), Lines{});
  EXPECT_EQ(ReadFile("\n"), Lines{""});
  EXPECT_EQ(ReadFile("a\n\nb\r\nlast"), (Lines{"a", "", "b\r", "last"}));
  const std::string zero("x\0y", 3);
  EXPECT_EQ(ReadFile(zero + "\n" + zero), (Lines{zero, zero}));
  // A line ends before, at and behind the end of a block.
  for (const std::size_t size : {16380U, 16381U, 16382U, 16383U, 65533U, 65534U, 1000000U}) {
    const std::string line(size, 'l');
    const std::string content = std::string("a\n").append(line).append("\nb\n").append(line);
    EXPECT_TRUE(ReadFile(content) == (Lines{"a", line, "b", line})) << size;
  }
}

TEST(HostChannel, DropsALineThatItCannotReadToItsEnd) {
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
  ASSERT_EQ(write(ends[1], "whole\nbroken", 12), 12);
  EXPECT_EQ(ReadAll(ends[0]), Lines{"whole"});
  close(ends[0]);
  close(ends[1]);
  EXPECT_EQ(ReadAll(-1), Lines{});
}

TEST(HostChannel, EndsAtALineThatThereIsNoMemoryFor) {
  const std::string input = "whole\n" + std::string(1000000, 'l') + "\nnext\n";
  largest_block = input.size() / 2;
  EXPECT_EQ(ReadFile(input), Lines{"whole"});
  largest_block = std::numeric_limits<std::size_t>::max();
}

TEST(HostChannel, TellsWhyAnAnswerIsLost) {
  const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
  EXPECT_FALSE(HostChannel(-1, full).Write("x"));
  EXPECT_EQ(errno, ENOSPC);
  close(full);
  // A pipe takes a part of what is too long for it.
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
  EXPECT_FALSE(HostChannel(-1, ends[1]).Write(std::string(1000000, 'x') + '\n'));
  EXPECT_EQ(errno, EAGAIN);
  close(ends[1]);
  const Lines taken = ReadAll(ends[0]);
  EXPECT_TRUE(taken.size() == 1 && taken[0] == std::string(taken[0].size(), 'x'));
  close(ends[0]);
}

}  // namespace
