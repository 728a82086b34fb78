#pragma once

namespace orivex::gtk {

/// The style rules of the photo library's sheet.
///
/// Sizes of texts are in pt, which grow with the text size that the visitor has chosen; px do not.
/// Dark whatever the system's style is: pictures keep their colours best on a neutral dark ground. Every text keeps a
/// contrast of more than 4.5 to 1.
inline constexpr const char* photoStyle = R"css(
.orivex-photo-sheet { background-color: #1c1c1e; color: white; }
.orivex-photo-sheet button { background: none; border: none; box-shadow: none; color: white; text-shadow: none;
  outline-offset: -2px; min-height: 32px; }
.orivex-photo-sheet button:focus-visible, .orivex-photo-sheet checkbutton:focus-visible,
.orivex-photo-sheet .waiting:focus-visible { outline: 2px solid #6ea0ff; outline-offset: -2px; }

.orivex-photo-sheet .bar { min-height: 52px; padding: 0 8px; }
.orivex-sheet:not(.dialog) .orivex-photo-sheet .bar:first-child { padding-top: 10px; }
.orivex-photo-sheet .plain { padding: 6px 10px; font-size: 12pt; border-radius: 10px; }
.orivex-photo-sheet .plain:hover { background-color: alpha(white, 0.08); }
.orivex-photo-sheet .album { padding: 4px 10px 4px 16px; font-size: 12pt; font-weight: 600; border-radius: 18px;
  background-color: #3a3a3c; }
.orivex-photo-sheet .album:hover { background-color: #48484a; }
.orivex-photo-sheet .album .arrow { background-color: alpha(white, 0.18); border-radius: 10px; padding: 2px;
  transition: transform 200ms; -gtk-icon-transform: rotate(0deg); }
.orivex-photo-sheet .album.open .arrow { -gtk-icon-transform: rotate(180deg); }

.orivex-photo-sheet .foot { min-height: 56px; padding: 0 14px; background-color: #1c1c1e; }
.orivex-photo-sheet .original { color: white; font-size: 11.25pt; min-height: 44px; border-radius: 10px; padding: 0 6px; }
.orivex-photo-sheet .original check { border-radius: 50%; min-width: 18px; min-height: 18px; padding: 1px;
  background: none; border: 1.5px solid white; box-shadow: none; margin-right: 6px; }
.orivex-photo-sheet .original check:checked { background-color: #3478f6; border-color: #3478f6; color: white; }
.orivex-photo-sheet .confirm { background-color: #2f6fe4; color: white; font-size: 11.25pt; font-weight: 600;
  border-radius: 20px; padding: 4px 18px; min-width: 52px; }
.orivex-photo-sheet .confirm:focus-visible, .orivex-preview .play:focus-visible { outline-color: white; }
.orivex-photo-sheet .confirm:hover { background-color: #3d7cf0; }
.orivex-photo-sheet .confirm:disabled { background-color: #3a3a3c; color: #98989f; filter: none; opacity: 1; }

.orivex-photos { background-color: #1c1c1e; font-size: 9.75pt; font-weight: 500; }
.orivex-photos > child { padding: 1px; margin: 0; border-radius: 0; background: none; border: none; }
.orivex-photos > child:focus-visible { outline: 3px solid #6ea0ff; outline-offset: -3px; padding: 6px; }
.orivex-photos-empty { padding: 24px; color: #98989f; }
.orivex-photos-empty .title { color: white; font-size: 13.5pt; font-weight: 600; }
.orivex-photos-empty .hint { font-size: 10.5pt; }

.orivex-albums-mask { background-color: transparent; transition: background-color 200ms; }
.orivex-albums-mask.open { background-color: rgba(0, 0, 0, 0.55); }
.orivex-albums-menu { background-color: #2c2c2e; }
.orivex-photo-sheet .browse { min-height: 44px; margin: 4px 16px 8px 16px; border-radius: 10px; font-size: 12pt;
  background-color: #3a3a3c; }
.orivex-photo-sheet .browse:hover { background-color: #48484a; }
.orivex-albums { background-color: #2c2c2e; color: white; padding: 6px 0; }
.orivex-albums > row { padding: 7px 16px; background: none; outline-offset: -3px; }
.orivex-albums > row:hover { background-color: alpha(white, 0.06); }
.orivex-albums > row:focus-visible { outline: 2px solid #6ea0ff; }
.orivex-albums .cover { border-radius: 6px; background-color: #3a3a3c; }
.orivex-albums .name { font-size: 12pt; }
.orivex-albums .count { font-size: 9.75pt; color: #a4a4ab; }

.orivex-preview { background-color: black; color: white; }
.orivex-preview .picture:focus-visible { outline: 2px solid #6ea0ff; outline-offset: -2px; }
.orivex-preview .bar { background-color: #1c1c1e; }
.orivex-preview .title { font-size: 12pt; font-weight: 600; }
.orivex-preview .length { background-color: rgba(0, 0, 0, 0.55); border-radius: 12px; padding: 3px 12px; margin: 16px;
  font-size: 10.5pt; }
.orivex-preview .play { min-width: 64px; min-height: 64px; padding: 0; border: none; border-radius: 32px; box-shadow: none;
  background-image: none; background-color: rgba(0, 0, 0, 0.55); color: white; }
.orivex-preview .play:active { background-color: rgba(80, 80, 80, 0.7); }
.orivex-photo-sheet .mark { padding: 0 10px; min-height: 44px; border-radius: 10px; }
.orivex-preview .disc { min-width: 26px; min-height: 26px; border-radius: 50%; border: 2px solid white; font-size: 10.5pt;
  font-weight: 600; }
.orivex-preview .disc.chosen { background-color: #3478f6; }

.orivex-toast { background-color: rgba(60, 60, 64, 0.97); color: white; border-radius: 12px; padding: 12px 20px;
  margin: 24px; font-size: 11.25pt; opacity: 0; transition: opacity 200ms; }
.orivex-toast.shown { opacity: 1; }
)css";

}  // namespace orivex::gtk
