#!/usr/bin/env bash
# The layers run one way: platform <- core <- the protocol and session
# libraries <- shell <- main. Reads every include under src/ and fails on
# one that runs upward, and on Qt Widgets outside shell/ and platform/.
# Includes that ran upward before the check existed are listed in
# scripts/layers-baseline.txt; they may go, none may come. Entries that no
# longer occur are reported so the list can shrink.
set -u
cd "$(dirname "$0")/.."
baseline=scripts/layers-baseline.txt

rank() {
  case "$1" in
    platform) echo 0 ;;
    core) echo 1 ;;
    access|wire|connection|transfer|board|media|links|nettools) echo 2 ;;
    shell) echo 3 ;;
    main.cpp) echo 4 ;;
    *) echo -1 ;;
  esac
}

widgets='QAbstractButton|QAction|QApplication|QBoxLayout|QCheckBox|QColorDialog|QComboBox|QDialog|QDialogButtonBox|QFileDialog|QFontDialog|QFormLayout|QFrame|QGraphics[A-Za-z]*|QGridLayout|QGroupBox|QHBoxLayout|QInputDialog|QLabel|QLayout|QLineEdit|QListWidget|QMainWindow|QMenu|QMenuBar|QMessageBox|QPlainTextEdit|QProgressBar|QPushButton|QRadioButton|QScrollArea|QScrollBar|QSlider|QSpinBox|QSplitter|QStatusBar|QSystemTrayIcon|QTabWidget|QTextEdit|QToolBar|QToolButton|QToolTip|QTreeWidget|QVBoxLayout|QWidget|QtWidgets'

found=$(mktemp); trap 'rm -f "$found"' EXIT
for file in $(git ls-files 'src/*.cpp' 'src/*.h' 2>/dev/null || find src -name '*.cpp' -o -name '*.h'); do
  rel=${file#src/}
  own=${rel%%/*}
  ownRank=$(rank "$own")
  [ "$ownRank" -lt 0 ] && continue
  while IFS= read -r line; do
    target=$(sed -E 's/^#include +"([^/"]+)\/.*$/\1/' <<<"$line")
    targetRank=$(rank "$target")
    if [ "$targetRank" -gt "$ownRank" ]; then
      echo "$file: $line" >>"$found"
    fi
  done < <(grep -E '^#include +"[a-z]+/' "$file")
  if [ "$own" != shell ] && [ "$own" != platform ] && [ "$own" != main.cpp ]; then
    grep -HE "^#include +<($widgets)>" "$file" | sed -E 's/^([^:]+):/\1: /' >>"$found"
  fi
done

sort -u -o "$found" "$found"
new=$(comm -23 "$found" <(sort -u "$baseline"))
gone=$(comm -13 "$found" <(sort -u "$baseline"))
if [ -n "$gone" ]; then
  echo "Layering: these listed includes are gone; take them off $baseline:"
  echo "$gone"
fi
if [ -n "$new" ]; then
  echo "Layering: these includes run upward (or bring Qt Widgets below the window layer):"
  echo "$new"
  echo "1 layer check, 0 passed, 1 failed"
  exit 1
fi
echo "layers: $(wc -l <"$found") listed includes left, no new one"
