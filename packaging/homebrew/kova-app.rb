# The signed application, for the project's own Homebrew tap. The URL and the checksum are placeholders until the first
# release.
cask "kova-app" do
  version "0.1.0"
  sha256 "0000000000000000000000000000000000000000000000000000000000000000"

  url "https://kova.example.org/releases/KOVA-#{version}.zip"
  name "KOVA"
  desc "Divides each display into named tiles and keeps windows in them"
  homepage "https://kova.example.org"

  depends_on macos: ">= :ventura"
  depends_on arch: :arm64

  app "KOVA.app"
  binary "#{appdir}/KOVA.app/Contents/Helpers/kova"

  uninstall quit: "org.example.kova"

  zap trash: [
    "~/Library/Application Support/KOVA",
    "~/Library/Logs/KOVA",
    "~/Library/Preferences/org.example.kova.plist",
  ]
end
