// The C functions that read documents.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "receiver/Samples.h"
#include "support/FailingAllocations.h"
#include "wenlolib/receiver_c.h"
#include "wenlolib/version.h"

namespace wenlolib::tests {
namespace {

using receiver::Layout;

/// A report that frees itself.
class Examined {
 public:
  explicit Examined(std::string_view bytes) {
    EXPECT_EQ(wenlolib_examine(bytes.data(), bytes.size(), &report_), WENLOLIB_OK);
  }
  ~Examined() { wenlolib_report_free(report_); }
  Examined(const Examined&) = delete;
  Examined& operator=(const Examined&) = delete;
  operator const wenlolib_report*() const { return report_; }

  [[nodiscard]] std::string value(const char* name) const {
    std::size_t size = 0;
    const char* const text = wenlolib_report_value(report_, name, &size);
    return text == nullptr ? "(null)" : std::string(text, size);
  }

  [[nodiscard]] std::string contents() const {
    std::size_t size = 0;
    const char* const bytes = wenlolib_report_contents(report_, &size);
    return bytes == nullptr ? "(null)" : std::string(bytes, size);
  }

 private:
  wenlolib_report* report_ = nullptr;
};

TEST(ReceiverInC, ASoundDocumentOfEachLayout) {
  const std::map<Layout, std::string> names = {{Layout::application, "application"},
                                               {Layout::printer, "printer"},
                                               {Layout::printerOlderTag, "printer_older_tag"}};
  for (const Layout layout : layouts) {
    std::string document = sample(layout).text();
    const std::string checksum = attributeIn(document, "SUM");
    const Examined report(document);
    document.assign(document.size(), '\0');  // the report does not need the bytes any more
    EXPECT_STREQ(wenlolib_report_fault(report), "none");
    EXPECT_STREQ(wenlolib_report_layer(report), "none");
    EXPECT_EQ(wenlolib_report_offset(report), 0U);
    EXPECT_STREQ(wenlolib_report_field(report), "");
    EXPECT_STREQ(wenlolib_report_explanation(report), "");
    EXPECT_EQ(wenlolib_report_trusted(report), 1);
    EXPECT_EQ(wenlolib_report_layout(report), names.at(layout));
    EXPECT_EQ(wenlolib_report_checksum(report), checksum);
    EXPECT_STREQ(wenlolib_report_cipher(report), "RC4");
    EXPECT_EQ(report.contents(), "some contents");
    const bool older = layout == Layout::printerOlderTag;
    EXPECT_EQ(report.value("SN"), older ? "QX200-0004711" : "(null)");
    EXPECT_NE(report.value("Date"), "(null)");
    EXPECT_EQ(report.value("date"), "(null)");
  }
}

TEST(ReceiverInC, ContentsOfAnyBytes) {
  const std::string contents("a\0\xFF\0", 4);
  for (const char marker : {'R', 'X'}) {
    const Examined report(sample(Layout::printer, marker, contents).text());
    EXPECT_EQ(report.contents(), contents);
    EXPECT_STREQ(wenlolib_report_cipher(report), marker == 'R' ? "RC4" : "XOR");
    EXPECT_STREQ(wenlolib_report_layer(report), "contents");
    EXPECT_EQ(wenlolib_report_trusted(report), 1);
  }
  const Examined none(sample(Layout::printer, 'R', "").text());
  std::size_t size = 7;
  ASSERT_NE(wenlolib_report_contents(none, &size), nullptr);
  EXPECT_EQ(size, 0U);
}

TEST(ReceiverInC, WhatIsFoundOfADocumentThatIsNotSound) {
  const std::string document = sample(Layout::printerOlderTag).text();
  const Examined altered(replaced(document, "QX200-0004711", "QX200-0004712"));
  EXPECT_STREQ(wenlolib_report_fault(altered), "altered");
  EXPECT_STREQ(wenlolib_report_layer(altered), "checksum");
  EXPECT_STREQ(wenlolib_report_field(altered), "SUM");
  EXPECT_STRNE(wenlolib_report_explanation(altered), "");
  EXPECT_EQ(wenlolib_report_trusted(altered), 0);
  EXPECT_EQ(altered.value("SN"), "QX200-0004712");
  EXPECT_EQ(altered.contents(), "some contents");

  const std::string cut = document.substr(0, document.find("</SN>") + 5);
  const Examined truncated(cut);
  EXPECT_STREQ(wenlolib_report_fault(truncated), "truncated");
  EXPECT_EQ(wenlolib_report_offset(truncated), cut.size());
  EXPECT_EQ(wenlolib_report_trusted(truncated), 0);
  EXPECT_EQ(truncated.value("SN"), "QX200-0004711");
  EXPECT_EQ(wenlolib_report_cipher(truncated), nullptr);
  EXPECT_EQ(truncated.contents(), "(null)");

  const Examined foreign("<html></html>");
  EXPECT_STREQ(wenlolib_report_fault(foreign), "foreign");
  EXPECT_EQ(wenlolib_report_layout(foreign), nullptr);
  EXPECT_STREQ(wenlolib_report_checksum(foreign), "");
}

TEST(ReceiverInC, WrongArgumentsAndNull) {
  auto* const kept = reinterpret_cast<wenlolib_report*>(&wenlolib_examine);
  wenlolib_report* report = kept;
  EXPECT_EQ(wenlolib_examine(nullptr, 1, &report), WENLOLIB_WRONG_ARGUMENT);
  EXPECT_EQ(report, nullptr);
  EXPECT_EQ(wenlolib_examine("x", 1, nullptr), WENLOLIB_WRONG_ARGUMENT);
  ASSERT_EQ(wenlolib_examine(nullptr, 0, &report), WENLOLIB_OK);
  EXPECT_STREQ(wenlolib_report_fault(report), "truncated");
  EXPECT_EQ(wenlolib_report_value(report, nullptr, nullptr), nullptr);
  EXPECT_EQ(wenlolib_report_contents(report, nullptr), nullptr);
  wenlolib_report_free(report);

  wenlolib_report_free(nullptr);
  for (const auto text : {wenlolib_report_fault, wenlolib_report_layer, wenlolib_report_field,
                          wenlolib_report_explanation, wenlolib_report_checksum}) {
    EXPECT_STREQ(text(nullptr), "");
  }
  std::size_t size = 1;
  EXPECT_EQ(wenlolib_report_offset(nullptr), 0U);
  EXPECT_EQ(wenlolib_report_trusted(nullptr), 0);
  EXPECT_EQ(wenlolib_report_layout(nullptr), nullptr);
  EXPECT_EQ(wenlolib_report_cipher(nullptr), nullptr);
  EXPECT_EQ(wenlolib_report_value(nullptr, "SN", &size), nullptr);
  EXPECT_EQ(size, 0U);
  size = 1;
  EXPECT_EQ(wenlolib_report_contents(nullptr, &size), nullptr);
  EXPECT_EQ(size, 0U);
  EXPECT_STREQ(wenlolib_receiver_version(), WENLOLIB_VERSION);
}

// --- Rows ---

class RowsInC : public testing::Test {
 protected:
  RowsInC() : folder(testing::TempDir() + "wenlolib-rows-XXXXXX") {
    if (mkdtemp(folder.data()) == nullptr) std::abort();
    write("a_1.PLM", sample(Layout::printer).text());
    write("b_2.PLM", "<html></html>");
    std::filesystem::create_symlink("nowhere", folder + "/c_3.PLM");
    std::filesystem::create_directory(folder + "/empty");
  }
  ~RowsInC() override { std::filesystem::remove_all(folder); }

  void write(const std::string& name, const std::string& bytes) const {
    std::ofstream(folder + "/" + name, std::ios::binary) << bytes;
  }

  static std::size_t column(std::string_view name) {
    for (std::size_t i = 0; i < wenlolib_column_count(); ++i) {
      if (wenlolib_column_name(i) == name) return i;
    }
    ADD_FAILURE() << "no column " << name;
    return 0;
  }

  static std::string text(const wenlolib_cell* cells, std::string_view name) {
    const wenlolib_cell& cell = cells[column(name)];
    return cell.type == WENLOLIB_NULL ? "(null)" : std::string(cell.text, cell.size);
  }

  std::string folder;
};

TEST_F(RowsInC, OneForEachDocumentWhateverItsState) {
  const std::string empty = folder + "/empty";
  for (const int jobs : {1, 3}) {
    const char* const paths[] = {folder.c_str(), empty.c_str()};
    wenlolib_rows* rows = nullptr;
    ASSERT_EQ(wenlolib_rows_open(paths, 2, jobs, 0, &rows), WENLOLIB_OK);
    EXPECT_STREQ(wenlolib_rows_complaint(rows), "");
    const wenlolib_cell* cells = nullptr;

    ASSERT_EQ(wenlolib_rows_next(rows, &cells), WENLOLIB_OK);
    ASSERT_NE(cells, nullptr);
    EXPECT_EQ(text(cells, "source"), folder + "/a_1.PLM");
    EXPECT_EQ(text(cells, "contents"), "some contents");
    EXPECT_EQ(text(cells, "member"), "(null)");
    EXPECT_EQ(cells[column("number")].integer, 1);
    EXPECT_EQ(cells[column("trusted")].type, WENLOLIB_TRUTH);
    EXPECT_EQ(cells[column("trusted")].integer, 1);
    for (std::size_t i = 0; i < wenlolib_column_count(); ++i) {
      EXPECT_TRUE(cells[i].type == WENLOLIB_NULL || cells[i].type == wenlolib_column_type(i));
      EXPECT_EQ(cells[i].text != nullptr, cells[i].type == WENLOLIB_TEXT);
    }

    ASSERT_EQ(wenlolib_rows_next(rows, &cells), WENLOLIB_OK);
    ASSERT_NE(cells, nullptr);
    EXPECT_EQ(text(cells, "fault"), "foreign");
    EXPECT_EQ(cells[column("trusted")].integer, 0);
    EXPECT_STREQ(wenlolib_rows_complaint(rows), "");

    ASSERT_EQ(wenlolib_rows_next(rows, &cells), WENLOLIB_OK);
    ASSERT_NE(cells, nullptr);
    EXPECT_EQ(text(cells, "fault"), "unreadable");
    EXPECT_STREQ(wenlolib_rows_complaint(rows), "No such file or directory");

    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(wenlolib_rows_next(rows, &cells), WENLOLIB_OK);
      EXPECT_EQ(cells, nullptr);
    }
    wenlolib_rows_free(rows);
  }
}

TEST_F(RowsInC, RedactedOnesLackTheIdentifierAndTheSerialNumber) {
  write("a_1.PLM", sample(Layout::printerOlderTag, 'R', "of QX200-0004711").text());
  const std::string path = folder + "/a_1.PLM";
  const char* const paths[] = {path.c_str()};
  wenlolib_rows* rows = nullptr;
  ASSERT_EQ(wenlolib_rows_open(paths, 1, 1, 2, &rows), WENLOLIB_OK);
  const wenlolib_cell* cells = nullptr;
  ASSERT_EQ(wenlolib_rows_next(rows, &cells), WENLOLIB_OK);
  ASSERT_NE(cells, nullptr);
  EXPECT_EQ(text(cells, "id"), "(null)");
  EXPECT_EQ(text(cells, "sn"), "(null)");
  EXPECT_EQ(text(cells, "contents"), "of [redacted]");
  wenlolib_rows_free(rows);
}

TEST_F(RowsInC, AMinusIsAFileOfThatName) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder);
  write("-", sample(Layout::application).text());
  const char* const paths[] = {"-"};
  wenlolib_rows* rows = nullptr;
  ASSERT_EQ(wenlolib_rows_open(paths, 1, 1, 0, &rows), WENLOLIB_OK);
  const wenlolib_cell* cells = nullptr;
  ASSERT_EQ(wenlolib_rows_next(rows, &cells), WENLOLIB_OK);
  ASSERT_NE(cells, nullptr);
  EXPECT_EQ(text(cells, "source"), "./-");
  EXPECT_EQ(text(cells, "fault"), "none");
  wenlolib_rows_free(rows);
  std::filesystem::current_path(before);
}

TEST_F(RowsInC, WrongArgumentsAndNull) {
  const char* const paths[] = {folder.c_str(), nullptr};
  auto* rows = reinterpret_cast<wenlolib_rows*>(&wenlolib_rows_open);
  EXPECT_EQ(wenlolib_rows_open(paths, 2, 1, 0, &rows), WENLOLIB_WRONG_ARGUMENT);
  EXPECT_EQ(rows, nullptr);
  EXPECT_EQ(wenlolib_rows_open(nullptr, 1, 1, 0, &rows), WENLOLIB_WRONG_ARGUMENT);
  EXPECT_EQ(wenlolib_rows_open(paths, 1, 1, 0, nullptr), WENLOLIB_WRONG_ARGUMENT);
  for (const int jobs : {-1, 0, 257}) {
    EXPECT_EQ(wenlolib_rows_open(paths, 1, jobs, 0, &rows), WENLOLIB_WRONG_ARGUMENT) << jobs;
  }
  const wenlolib_cell* cells = nullptr;
  ASSERT_EQ(wenlolib_rows_open(nullptr, 0, 256, 0, &rows), WENLOLIB_OK);
  EXPECT_EQ(wenlolib_rows_next(rows, nullptr), WENLOLIB_WRONG_ARGUMENT);
  EXPECT_EQ(wenlolib_rows_next(rows, &cells), WENLOLIB_OK);
  EXPECT_EQ(cells, nullptr);
  wenlolib_rows_free(rows);

  EXPECT_EQ(wenlolib_rows_next(nullptr, &cells), WENLOLIB_WRONG_ARGUMENT);
  EXPECT_STREQ(wenlolib_rows_complaint(nullptr), "");
  wenlolib_rows_free(nullptr);
  const std::size_t columns = wenlolib_column_count();
  EXPECT_EQ(columns, 27U);
  EXPECT_STREQ(wenlolib_column_name(0), "schema");
  EXPECT_EQ(wenlolib_column_type(0), WENLOLIB_INTEGER);
  EXPECT_EQ(wenlolib_column_name(columns), nullptr);
  EXPECT_EQ(wenlolib_column_type(columns), WENLOLIB_NULL);
}

TEST_F(RowsInC, AProcessThatIsForkedOffCannotUseThem) {
  const char* const paths[] = {folder.c_str()};
  for (const int jobs : {1, 3}) {
    wenlolib_rows* rows = nullptr;
    const wenlolib_cell* cells = nullptr;
    ASSERT_EQ(wenlolib_rows_open(paths, 1, jobs, 0, &rows), WENLOLIB_OK);
    ASSERT_EQ(wenlolib_rows_next(rows, &cells), WENLOLIB_OK);
    const pid_t child = fork();
    if (child == 0) {
      alarm(60);  // ends the process
      const int answer = wenlolib_rows_next(rows, &cells);
      wenlolib_rows_free(rows);
      _exit(answer == WENLOLIB_WRONG_ARGUMENT && cells == nullptr ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    ASSERT_EQ(wenlolib_rows_next(rows, &cells), WENLOLIB_OK);
    EXPECT_EQ(text(cells, "fault"), "foreign");
    wenlolib_rows_free(rows);
  }
}

TEST_F(RowsInC, ThreadsLeaveTheProgramsSignalsAlone) {
  static volatile std::sig_atomic_t handledElsewhere;
  static std::thread::id own;
  handledElsewhere = 0;
  own = std::this_thread::get_id();
  const auto before = std::signal(SIGUSR1, [](int) {
    if (std::this_thread::get_id() != own) handledElsewhere = 1;
  });
  const char* const paths[] = {folder.c_str()};
  wenlolib_rows* rows = nullptr;
  ASSERT_EQ(wenlolib_rows_open(paths, 1, 8, 0, &rows), WENLOLIB_OK);
  sigset_t hold;
  sigset_t kept;
  sigemptyset(&hold);
  sigaddset(&hold, SIGUSR1);
  pthread_sigmask(SIG_BLOCK, &hold, &kept);
  kill(getpid(), SIGUSR1);  // a thread that does not block it would get it now
  const wenlolib_cell* cells = nullptr;
  do {
    ASSERT_EQ(wenlolib_rows_next(rows, &cells), WENLOLIB_OK);
  } while (cells != nullptr);
  wenlolib_rows_free(rows);
  sigset_t pending;
  sigpending(&pending);
  EXPECT_EQ(sigismember(&pending, SIGUSR1), 1);
  pthread_sigmask(SIG_SETMASK, &kept, nullptr);
  EXPECT_EQ(handledElsewhere, 0);
  std::signal(SIGUSR1, before);
}

// --- Memory that runs out ---

constexpr long tooMany = 5000;

TEST(ReceiverInC, EachAllocationOfAnExaminationFails) {
  const std::string document = sample(Layout::printerOlderTag).text();
  long k = 1;
  for (bool struck = true; struck; ++k) {
    ASSERT_LT(k, tooMany);
    wenlolib_report* report = nullptr;
    FailingAllocations failing(k);
    const int answer = wenlolib_examine(document.data(), document.size(), &report);
    failing.stop();
    struck = failing.struck();
    EXPECT_EQ(answer, struck ? WENLOLIB_NO_MEMORY : WENLOLIB_OK);
    EXPECT_EQ(report == nullptr, struck);
    wenlolib_report_free(report);
  }
  EXPECT_GT(k, 5);
}

TEST_F(RowsInC, EachAllocationOfAPassageFails) {
  const char* const paths[] = {folder.c_str()};
  for (const auto span : {FailingAllocations::Span::once, FailingAllocations::Span::onwards}) {
    long k = 1;
    for (bool struck = true; struck; ++k) {
      ASSERT_LT(k, tooMany);
      wenlolib_rows* rows = nullptr;
      const wenlolib_cell* cells = nullptr;
      int count = 0;
      FailingAllocations failing(k, span);
      int answer = wenlolib_rows_open(paths, 1, 1, 0, &rows);
      while (answer == WENLOLIB_OK) {
        answer = wenlolib_rows_next(rows, &cells);
        if (cells == nullptr) break;
        ++count;
      }
      failing.stop();
      struck = failing.struck();
      if (answer != WENLOLIB_OK) {
        EXPECT_EQ(answer, WENLOLIB_NO_MEMORY);
        EXPECT_EQ(cells, nullptr);
        if (rows != nullptr) {
          EXPECT_EQ(wenlolib_rows_next(rows, &cells), WENLOLIB_NO_MEMORY);
        }
      } else {
        EXPECT_EQ(count, 3);
      }
      EXPECT_TRUE(struck || answer == WENLOLIB_OK);
      wenlolib_rows_free(rows);
    }
    EXPECT_GT(k, 10);
  }
}

}  // namespace
}  // namespace wenlolib::tests
