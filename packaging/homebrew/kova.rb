# The command line and the agent from source, for a tap of the project's own. The address and the sum are placeholders
# until there is a release to name.
class Kova < Formula
  desc "Divides each display into named tiles and keeps windows in them"
  homepage "https://kova.example.org"
  url "https://kova.example.org/releases/kova-0.1.0.tar.gz"
  sha256 "0000000000000000000000000000000000000000000000000000000000000000"
  license "MIT"

  depends_on "asio" => :build
  depends_on "cmake" => :build
  depends_on "librsvg" => :build
  depends_on "ninja" => :build
  depends_on "nlohmann-json" => :build
  depends_on "pkgconf" => :build
  depends_on "spdlog" => :build
  depends_on "icu4c@77"
  depends_on macos: :ventura

  def install
    system "cmake", "-S", ".", "-B", "build", "-G", "Ninja", "-DKOVA_BUILD_TESTS=OFF", "-DKOVA_BUILD_BENCHMARKS=OFF",
           *std_cmake_args
    system "cmake", "--build", "build"
    prefix.install "build/bin/KOVA.app"
    bin.install_symlink prefix/"KOVA.app/Contents/Helpers/kova"
  end

  service do
    run [opt_prefix/"KOVA.app/Contents/MacOS/KOVA"]
    keep_alive crashed: true # one that ends by itself, as where another has the session, has said why
  end

  def caveats
    <<~EOS
      KOVA moves the windows of other applications. Allow it under
      System Settings → Privacy & Security → Accessibility:
        #{opt_prefix}/KOVA.app
    EOS
  end

  test do
    assert_match version.to_s, shell_output("#{bin}/kova --version")
  end
end
