// A card inside of its window: paints it, and lays the toolkit's buttons over what can be pressed.
//
// Made by: `CardWindow`. Main thread.
#pragma once

#include <functional>
#include <gtkmm/fixed.h>
#include <memory>
#include <string>
#include <vector>

#include "HostProgram/Cards/CardPicture.h"
#include "HostProgram/Cards/FaceButton.h"

namespace lanternfold {

/// Can be focused as a whole, and each of its buttons and links can. To a screen reader it says
/// what is painted.
class CardCanvas final : public Gtk::Fixed {
 public:
  struct Handlers {
    std::function<void(const std::string& intent)> press;
    std::function<void(const std::string& url)> openLink;
  };

  /// `drawing` outlives the canvas.
  CardCanvas(const CardDrawing& drawing, Handlers handlers);
  ~CardCanvas() override;
  CardCanvas(const CardCanvas&) = delete;
  CardCanvas& operator=(const CardCanvas&) = delete;

  /// `name` is the widget's, for a screen reader.
  void show(const std::string& name, const View& view, const CardState& state);
  /// The same view, drawn anew when something else of it has changed: the colour scheme, the words
  /// for the time.
  void refresh();
  void setCorners(CardCorners corners);

  [[nodiscard]] const CardPicture& picture() const { return picture_; }

 protected:
  bool on_draw(const Cairo::RefPtr<Cairo::Context>& context) override;
  bool on_focus(Gtk::DirectionType direction) override;

 private:
  void showPicture();
  void lay(FaceButton& button, const CardFace& face);
  void layFaces();
  void addButton();
  void activate(const FaceButton& button);
  void showPressed(const FaceButton& button);
  void drawFocus(const Cairo::RefPtr<Cairo::Context>& context) const;
  /// The card itself, then its buttons.
  [[nodiscard]] std::vector<Gtk::Widget*> focusOrder();

  Handlers handlers_;
  CardPicture picture_;
  CardState state_;
  Glib::RefPtr<Gtk::CssProvider> bareButtons_ = Gtk::CssProvider::create();
  std::vector<std::unique_ptr<FaceButton>> buttons_;
  std::vector<sigc::connection> connections_;  ///< to `buttons_`
};

}  // namespace lanternfold
