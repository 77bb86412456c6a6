#!/usr/bin/env bash
# Packs the tools, the component and its bundle into a Debian package. Called by the target `deb`,
# which builds what goes in:
#
#   packaging/deb.sh BUILD_FOLDER VERSION PACKAGE
#
# The same contents make the same bytes: all times are SOURCE_DATE_EPOCH, the time of the last
# commit unless it is set.
set -euo pipefail

build=$(realpath "$1")
version=$2
package=$(realpath -m "$3")
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
name=orbelo-scales
library=OrbeloScalesLin64.so

SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git -C "$top" log -1 --format=%ct)}
export SOURCE_DATE_EPOCH LC_ALL=C
umask 022

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
stage=$work/stage
# The folder of a package is readable by all, that of mktemp isn't.
mkdir -p "$stage/DEBIAN"

# put MODE SOURCE TARGET
put() { install -D -m "$1" "$2" "$stage/$3"; }
# put_packed SOURCE TARGET, which gets a name in .gz
put_packed() {
  put 644 "$1" "$2"
  gzip -9n "$stage/$2"
}

# weigh looks for the component beside itself, so the programs stand there and /usr/bin points to
# them.
for program in weigh scalesim; do
  put 755 "$build/$program" usr/lib/$name/$program
  strip --strip-all "$stage/usr/lib/$name/$program"
  mkdir -p "$stage/usr/bin"
  ln -s "../lib/$name/$program" "$stage/usr/bin/$program"

  put_packed "$build/manual/$program.1" usr/share/man/man1/$program.1
  put_packed "$build/manual/$program.ru.1" usr/share/man/ru/man1/$program.1
  put_packed "$build/manual/$program.uk.1" usr/share/man/uk/man1/$program.1
  put 644 "$build/manual/$program.bash" usr/share/bash-completion/completions/$program
  put 644 "$build/manual/$program.zsh" usr/share/zsh/vendor-completions/_$program
done
put 644 "$build/packaging/bundle/$library" usr/lib/$name/$library
put 644 "$build/OrbeloScales.zip" usr/share/$name/OrbeloScales.zip

(cd "$top/docs" && find . -type f ! -name architecture.md) | while read -r page; do
  put 644 "$top/docs/$page" "usr/share/doc/$name/${page#./}"
done
put_packed "$top/CHANGELOG.md" usr/share/doc/$name/changelog
# Parts of these are compiled into the programs, and ask for their notice to go along.
for part in libcli11-dev nlohmann-json3-dev libfmt-dev; do
  notice=/usr/share/doc/$part/copyright
  [[ ! -f $notice ]] || put 644 $notice usr/share/doc/$name/copyright.$part
done

mkdir -p "$work/debian"
printf 'Source: %s\n\nPackage: %s\nArchitecture: amd64\n' $name $name >"$work/debian/control"
depends=$(cd "$work" && dpkg-shlibdeps -O -e"$stage/usr/lib/$name/weigh" \
  -e"$stage/usr/lib/$name/scalesim" -e"$stage/usr/lib/$name/$library" | sed 's/^shlibs:Depends=//')
# Of the files alone: what a folder takes depends on the disk.
size=$(find "$stage/usr" -type f -printf '%s\n' | awk '{ sum += $1 } END { print int(sum / 1024) + 1 }')

cat >"$stage/DEBIAN/control" <<CONTROL
Package: $name
Version: $version
Architecture: amd64
Maintainer: Orbelo scales <maintainer@orbelo.invalid>
Installed-Size: $size
Depends: $depends
Suggests: bash-completion, man-db
Section: misc
Priority: optional
Description: driver of electronic scales for 1C:Enterprise, with its tools
 A native add-in component that reads some forty kinds of electronic scales
 over serial lines and TCP, as the archive that the platform installs, and:
 .
  * weigh, which finds a scale, reads it and tells what is wrong with it
  * scalesim, which plays the scale's side of every protocol
 .
 The archive is /usr/share/$name/OrbeloScales.zip.
CONTROL
(cd "$stage" && find usr -type f -print0 | sort -z | xargs -0 md5sum >DEBIAN/md5sums)
find "$stage" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +

mkdir -p "$(dirname "$package")"
# By one thread: with more, the cuts between their parts would depend on the machine.
dpkg-deb --root-owner-group -Zxz --threads-max=1 --build "$stage" "$package" >/dev/null
