#include "PlatformLinux/Location/Sandbox.h"
#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold {
namespace {

constexpr const char* file = "/.flatpak-info";
const Sandbox ofNobody;

TEST(SandboxFile, ItsApplicationIsTheOneThatTheSystemKnows) {
  const Sandbox sandbox = parseSandboxFile(
      "[Application]\nname=net.quernaple.LanternfoldX\nruntime=runtime/x/y/z\n\n[Instance]\n"
      "instance-id=1\n\n[Session Bus Policy]\norg.example.Name=talk\n");
  EXPECT_EQ(sandbox.applicationId, "net.quernaple.LanternfoldX");
}

TEST(SandboxFile, WithoutANameItIsOneOfNobody) {
  for (const char* text :
       {"", "[Application]\n", "[Application]\nruntime=x\n", "[Instance]\nname=net.quernaple.X\n",
        "name=net.quernaple.X\n", "[Runtime]\nname=x\n", "[Application]\nname=\n", "{}", "\n\n"}) {
    EXPECT_EQ(parseSandboxFile(text), ofNobody) << text;
  }
}

TEST(SandboxFile, ANameThatNoApplicationHasIsNone) {
  for (const std::string name :
       {"net/quernaple", "../x", "net quernaple", "net.quernaple.\xc3\xa9", "a;b", "a=b", "a'b"}) {
    EXPECT_EQ(parseSandboxFile("[Application]\nname=" + name + "\n"), ofNobody) << name;
  }
  const std::string longest(255, 'a');
  EXPECT_EQ(parseSandboxFile("[Application]\nname=" + longest + "\n").applicationId, longest);
  EXPECT_EQ(parseSandboxFile("[Application]\nname=" + longest + "a\n"), ofNobody);
}

TEST(SandboxFile, CutAnywhereItIsOneOfNobodyOrOfABeginning) {
  const std::string whole = "[Application]\nname=net.quernaple.X\n";
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const std::string id = parseSandboxFile(whole.substr(0, length)).applicationId;
    EXPECT_TRUE(std::string("net.quernaple.X").starts_with(id)) << length;
  }
}

TEST(SandboxFile, ZeroBytesAndFilesTooLongAreOfNobody) {
  EXPECT_EQ(parseSandboxFile(std::string(100, '\0')), ofNobody);
  EXPECT_EQ(parseSandboxFile("[Application]\nname=a\n" + std::string(longestSandboxFile, '#')),
            ofNobody);
}

class FindSandbox : public testing::Test {
 protected:
  SimulatedClock clock_;
  FakeFileSystem files_{clock_};
};

TEST_F(FindSandbox, OutsideThereIsNone) { EXPECT_FALSE(findSandbox(file, files_)); }

TEST_F(FindSandbox, InsideTheFileTellsWhose) {
  files_.putFile(file, "[Application]\nname=net.quernaple.X\n");
  EXPECT_EQ(findSandbox(file, files_), Sandbox{"net.quernaple.X"});
}

TEST_F(FindSandbox, AFileThatCannotBeReadIsASandboxToo) {
  files_.putFile(file, "[Application]\nname=net.quernaple.X\n");
  files_.denyReading(file);
  EXPECT_EQ(findSandbox(file, files_), ofNobody);
  files_.allowAll(file);
  files_.putFile(file, std::string(longestSandboxFile + 1, '#'));
  EXPECT_EQ(findSandbox(file, files_), ofNobody);
}

}  // namespace
}  // namespace lanternfold
