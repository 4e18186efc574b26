#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <thread>

#include "host/log/LogStream.h"
#include "host/testing/TestFolder.h"

namespace qx {
namespace {

// The log file of one test.
class LogFiles : public testing::Test {
 protected:
  std::string Path() const { return folder_ / "log"; }
  std::string Content() const { return folder_.Read("log"); }
  // What a log of that style holds after the writing.
  std::string Written(LogStyle style, ColourChoice colour, const std::function<void(ActionLog&)>& write) {
    {
      ActionLog log;
      log.AddSink(std::make_unique<StreamSink>(LogFile::Create(Path()), style, colour));
      write(log);
    }
    return Content();
  }
  std::string Text(const std::function<void(ActionLog&)>& write) {
    return Written(LogStyle::Text, ColourChoice::Automatic, write);
  }
  std::string Json(const std::function<void(ActionLog&)>& write) {
    return Written(LogStyle::Json, ColourChoice::Automatic, write);
  }

 private:
  TestFolder folder_;
};

void SendStatus(ActionLog& log, std::string_view heading, const std::vector<std::string>& details) {
  const auto message = CreateLogMessage();
  if (!heading.empty()) message->SetHeading(heading);
  for (const std::string& detail : details) message->AppendDetail(detail);
  log.AddStatus(1, *message);
}

TEST_F(LogFiles, TextShowsAMessageAsItIs) {
  EXPECT_EQ(Text([](ActionLog& log) { log.AddMessage(1, "  a\tb\r\nc "); }), "  a\tb\r\nc \n");
}

TEST_F(LogFiles, TextIndentsDetailsUnderAHeading) {
  EXPECT_EQ(Text([](ActionLog& log) {
              SendStatus(log, "Head", {"one", "", "two\r\nlines"});
            }),
            "Head\n    one\n    \n    two\n    lines\n");
}

TEST_F(LogFiles, TextDoesNotIndentWithoutAHeading) {
  EXPECT_EQ(Text([](ActionLog& log) { SendStatus(log, "", {"one", "two"}); }), "one\ntwo\n");
}

TEST_F(LogFiles, LastHeadingHolds) {
  EXPECT_EQ(Text([](ActionLog& log) {
              const auto message = CreateLogMessage();
              message->AppendDetail("detail");
              message->SetHeading("first");
              message->SetHeading("second");
              log.AddStatus(1, *message);
            }),
            "second\n    detail\n");
}

TEST_F(LogFiles, TextShowsExceptionValidationAndResult) {
  EXPECT_EQ(Text([](ActionLog& log) {
              log.AddValidation(1, "Solution file", "A solution file has not been set");
              log.AddException(1, "Boom");
              log.AddResult(1, "Build", true, 1.26);
              log.AddResult(2, "Build", false, 0);
            }),
            "Solution file: A solution file has not been set\nBoom\nBuild: succeeded (1.3 s)\n"
            "Build: failed (0.0 s)\n");
}

TEST_F(LogFiles, JsonIsOneObjectALine) {
  EXPECT_EQ(Json([](ActionLog& log) {
              log.AddMessage(1, "text");
              SendStatus(log, "Head", {"a", "b"});
              SendStatus(log, "", {});
              log.AddException(2, "Boom");
              log.AddValidation(3, "Subject", "Message");
              log.AddResult(4, "Build", true, 1.2);
              log.AddResult(5, "Build", false, 12.0004);
            }),
            "{\"action\":1,\"kind\":\"message\",\"text\":\"text\"}\n"
            "{\"action\":1,\"kind\":\"status\",\"heading\":\"Head\",\"details\":[\"a\",\"b\"]}\n"
            "{\"action\":1,\"kind\":\"status\",\"heading\":\"\",\"details\":[]}\n"
            "{\"action\":2,\"kind\":\"exception\",\"text\":\"Boom\"}\n"
            "{\"action\":3,\"kind\":\"validation\",\"subject\":\"Subject\",\"message\":\"Message\"}\n"
            "{\"action\":4,\"kind\":\"result\",\"name\":\"Build\",\"success\":true,\"seconds\":1.2}\n"
            "{\"action\":5,\"kind\":\"result\",\"name\":\"Build\",\"success\":false,\"seconds\":12}\n");
}

TEST_F(LogFiles, JsonEscapesWhatItMust) {
  EXPECT_EQ(Json([](ActionLog& log) { log.AddMessage(1, std::string_view("\"\\\r\n\t\x01\x7F\0/", 9)); }),
            "{\"action\":1,\"kind\":\"message\",\"text\":\"\\\"\\\\\\r\\n\\t\\u0001\\u007f\\u0000/\"}\n");
}

TEST_F(LogFiles, JsonKeepsTheValidPartOfBrokenUtf8) {
  const std::string bad = "\xEF\xBF\xBD";
  // A lone follower, an overlong form, a surrogate, a cut sequence; and valid ones of 2, 3 and 4 bytes
  // between them.
  EXPECT_EQ(Json([](ActionLog& log) {
              log.AddMessage(1, "\xC3\xA4\x80 \xC0\xAF \xE2\x82\xAC\xED\xA0\x80 \xF0\x9F\x98\x80\xE2\x82");
            }),
            "{\"action\":1,\"kind\":\"message\",\"text\":\"\xC3\xA4" + bad + " " + bad + bad +
                " \xE2\x82\xAC" + bad + bad + bad + " \xF0\x9F\x98\x80" + bad + bad + "\"}\n");
}

TEST_F(LogFiles, TextKeepsBytesThatAreNotUtf8) {
  EXPECT_EQ(Text([](ActionLog& log) { log.AddMessage(1, "gr\xFC\xDF \xC3\xA4"); }), "gr\xFC\xDF \xC3\xA4\n");
}

TEST_F(LogFiles, ColourOnDemandOnly) {
  const auto write = [](ActionLog& log) {
    SendStatus(log, "Head", {"a"});
    log.AddResult(1, "Build", true, 0);
  };
  EXPECT_EQ(Written(LogStyle::Text, ColourChoice::Always, write),
            "\x1b[1mHead\x1b[0m\n    a\n\x1b[32mBuild: succeeded (0.0 s)\x1b[0m\n");
  EXPECT_EQ(Written(LogStyle::Text, ColourChoice::Automatic, write),
            "Head\n    a\nBuild: succeeded (0.0 s)\n");
  EXPECT_EQ(Written(LogStyle::Json, ColourChoice::Always, write).find('\x1b'), std::string::npos);
}

TEST_F(LogFiles, LinesOfATonePaintThemselvesWhereThereIsColour) {
  std::string text = "before: error\n";
  const std::string before = text;
  const ToneOfLine toneOf = [](std::string_view line) {
    if (line.find("error") != std::string_view::npos) return LineTone::Error;
    return line.find("warning") != std::string_view::npos ? LineTone::Warning : LineTone::Plain;
  };
  text += "a\n    an error\n\n\x1b[1mits own error\x1b[0m\na warning\n";
  PaintLines(text, before.size(), toneOf);
  EXPECT_EQ(text, before +
                      "a\n\x1b[31m    an error\x1b[0m\n\n\x1b[1mits own error\x1b[0m\n"
                      "\x1b[33ma warning\x1b[0m\n");
}

TEST_F(LogFiles, ATerminalObeysNothingInATextOfTheBuild) {
  const auto write = [](ActionLog& log) {
    log.AddMessage(1, "\x1b]0;title\x07 \x1b[31mred\x1b[0m \u202Eright");
    SendStatus(log, "Head\x1b[2J", {"failed\rsucceeded", "progress\r", "plain"});
  };
  EXPECT_EQ(Text(write),
            "\\u001B]0;title\\u0007 \\u001B[31mred\\u001B[0m \\u202Eright\n"
            "Head\\u001B[2J\n    failed\n    succeeded\n    progress\n    plain\n");
  const std::string always = Written(LogStyle::Text, ColourChoice::Always, write);
  EXPECT_TRUE(always.starts_with("\\u001B]0;title\\u0007 \x1b[31mred\x1b[0m \\u202Eright\n")) << always;
}

TEST_F(LogFiles, JsonCarriesWhatATerminalWouldObeyByItsNumber) {
  EXPECT_EQ(Json([](ActionLog& log) { log.AddMessage(1, "\u009B\u202E\u2028\x7F\u00E4"); }),
            "{\"action\":1,\"kind\":\"message\",\"text\":\"\\u009b\\u202e\\u2028\\u007f\u00E4\"}\n");
}

TEST_F(LogFiles, SecretsAreMaskedInEveryText) {
  const std::string text = Text([](ActionLog& log) {
    log.AddSecret("hush");
    log.AddMessage(1, "psw=hush;hush");
    SendStatus(log, "hush head", {"hu", "sh", "xhushx"});
    log.AddException(1, "hush!");
    log.AddValidation(1, "hush", "hush");
    log.AddResult(1, "hush", true, 0);
  });
  EXPECT_EQ(text,
            "psw=***;***\n*** head\n    hu\n    sh\n    x***x\n***!\n***: ***\n***: succeeded (0.0 s)\n");
}

TEST_F(LogFiles, OverlappingSecretsLeaveNothing) {
  EXPECT_EQ(Text([](ActionLog& log) {
              log.AddSecret("abc");
              log.AddSecret("cde");
              log.AddSecret("aa");
              log.AddSecret("");
              log.AddMessage(1, "1abcde2 aaa abcd");
            }),
            "1***2 *** ***d\n");
}

TEST_F(LogFiles, EachLineOfASecretIsOne) {
  EXPECT_EQ(Text([](ActionLog& log) {
              log.AddSecret("first\r\nsecond");
              log.AddMessage(1, "a second b");
            }),
            "a *** b\n");
}

// As a server or a child echoes the header: "user:hush-hush", "me:hush-hush!", "abc:hush-hush".
TEST_F(LogFiles, ASecretWithinBase64IsOne) {
  const std::string text = Text([](ActionLog& log) {
    log.AddSecret("hush-hush");
    log.AddMessage(1,
                   "Basic dXNlcjpodXNoLWh1c2g=, bWU6aHVzaC1odXNoIQ==, YWJjOmh1c2gtaHVzaA==, Basic b3RoZXI=");
  });
  EXPECT_EQ(text, "Basic dXNlcjp***g=, bWU6***IQ==, YWJjOm***A==, Basic b3RoZXI=\n");
}

TEST_F(LogFiles, JsonMasksBeforeItEscapes) {
  EXPECT_EQ(Json([](ActionLog& log) {
              log.AddSecret("a\"b");
              log.AddMessage(1, "<a\"b>");
            }),
            "{\"action\":1,\"kind\":\"message\",\"text\":\"<***>\"}\n");
}

TEST_F(LogFiles, AResultIsSeenAtOnce) {
  ActionLog log;
  log.AddSink(std::make_unique<StreamSink>(LogFile::Create(Path()), LogStyle::Text, ColourChoice::Never));
  log.AddMessage(1, "m");
  log.AddResult(1, "Build", true, 0);
  EXPECT_EQ(Content(), "m\nBuild: succeeded (0.0 s)\n");
}

TEST_F(LogFiles, ALineIsSeenSoonWithoutAnotherOne) {
  ActionLog log;
  log.AddSink(std::make_unique<StreamSink>(LogFile::Create(Path()), LogStyle::Text, ColourChoice::Never));
  for (const std::string expected : {"one\n", "one\ntwo\n"}) {
    log.AddMessage(1, expected == "one\n" ? "one" : "two");
    const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (Content() != expected && std::chrono::steady_clock::now() < patience) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_EQ(Content(), expected);
  }
}

TEST_F(LogFiles, ThreadsDoNotTearLines) {
  constexpr int kLines = 20000;
  const std::string text = Text([](ActionLog& log) {
    const auto write = [&log](const std::string& line) {
      for (int i = 0; i < kLines; ++i) SendStatus(log, "", {line});
    };
    std::thread a(write, std::string(40, 'a'));
    std::thread b(write, std::string(40, 'b'));
    for (int i = 0; i < 100; ++i) log.Flush();
    a.join();
    b.join();
  });
  std::istringstream lines(text);
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    ASSERT_TRUE(line == std::string(40, 'a') || line == std::string(40, 'b')) << line;
  }
  EXPECT_EQ(count, 2 * kLines);
}

TEST_F(LogFiles, AFileThatCannotBeMadeIsNamed) {
  const std::string path = Path() + "/no/such/folder";
  try {
    LogFile::Create(path);
    FAIL();
  } catch (const Exception& failure) {
    EXPECT_EQ(failure.Message().substr(0, path.size() + 15), "Cannot write " + path + ": ");
  }
}

TEST(ActionLog, KeepsEntriesInMemory) {
  ActionLog log;
  auto& memory = static_cast<MemorySink&>(log.AddSink(std::make_unique<MemorySink>()));
  SendStatus(log, "Head", {"a", "b"});
  log.AddResult(7, "Build", false, 2.5);
  ASSERT_EQ(memory.Entries().size(), 2U);
  EXPECT_EQ(memory.Entries()[0].text, "Head");
  EXPECT_EQ(memory.Entries()[0].details, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(memory.Entries()[1].action, 7);
  EXPECT_EQ(memory.Lines(), (std::vector<std::string>{"Head\n    a\n    b", "Build: failed (2.5 s)"}));
}

TEST(ActionLog, AReusedMessageIsEmpty) {
  ActionLog log;
  auto& memory = static_cast<MemorySink&>(log.AddSink(std::make_unique<MemorySink>()));
  SendStatus(log, "Head", {"a"});
  SendStatus(log, "", {"b"});
  EXPECT_EQ(memory.Lines()[1], "b");
}

TEST(ActionLog, MessagesAnswerForTheirInterface) {
  const auto message = CreateLogMessage();
  EXPECT_TRUE(Query<IQXActionLogMessage>(message.get()));
  EXPECT_EQ(message->_AddRef(), 2);
  EXPECT_EQ(message->_Release(), 1);
}

class ForeignMessage : public Implements<IQXActionLogMessage> {
 public:
  void AppendDetail(std::string_view) override {}
  void SetHeading(std::string_view) override {}
};

TEST(ActionLog, RefusesAMessageOfAnotherHost) {
  ActionLog log;
  const auto message = MakeInterface<ForeignMessage>();
  EXPECT_THROW(log.AddStatus(1, *message), Exception);
}

}  // namespace
}  // namespace qx
