# The signed application, for a tap of the project's own. The address and the sum are placeholders until there is a
# release to name.
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
