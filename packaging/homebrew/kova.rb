# Builds KOVA.app with the agent and the command line from source, for the project's own Homebrew tap. The URL and the
# checksum are placeholders until the first release.
class Kova < Formula
  desc "Divides each display into named tiles and keeps windows in them"
  homepage "https://kova.example.org"
  url "https://kova.example.org/releases/kova-0.1.0.tar.gz"
  sha256 "0000000000000000000000000000000000000000000000000000000000000000"
  license "MIT"

  depends_on "asio" => :build
  depends_on "cmake" => :build
  depends_on "librsvg" => :build
  depends_on "nlohmann-json" => :build
  depends_on "pkgconf" => :build
  depends_on "spdlog" => :build
  depends_on "icu4c@77"
  depends_on "qt"
  depends_on macos: :ventura
  depends_on xcode: ["15.0", :build] # the system finds the App Intents only if Xcode builds them

  def install
    system "cmake", "-S", ".", "-B", "build", "-G", "Xcode", "-DKOVA_WITH_APP_INTENTS=ON",
           "-DKOVA_BUILD_TESTS=OFF", "-DKOVA_BUILD_BENCHMARKS=OFF", *std_cmake_args
    system "cmake", "--build", "build", "--config", "Release", "--target", "kova-agent"
    prefix.install "build/bin/Release/KOVA.app"
    bin.install_symlink prefix/"KOVA.app/Contents/Helpers/kova"
  end

  service do
    run [opt_prefix/"KOVA.app/Contents/MacOS/KOVA"]
    keep_alive crashed: true # an agent that ended without a crash is not started again
  end

  def caveats
    <<~EOS
      KOVA moves the windows of other applications. Allow it under
      System Settings → Privacy & Security → Accessibility:
        #{opt_prefix}/KOVA.app

      After an upgrade, macOS may list KOVA as allowed but not give it access. Remove KOVA from that list and
      add it again, or run
        tccutil reset Accessibility org.example.kova
    EOS
  end

  test do
    assert_match version.to_s, shell_output("#{bin}/kova --version")
  end
end
