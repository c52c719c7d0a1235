// A button or link of a card, as the toolkit and a screen reader know it: without a look of its
// own, over what the card has painted.
#pragma once

#include <gtkmm/button.h>
#include <gtkmm/cssprovider.h>

#include "HostProgram/Cards/CardFaces.h"

namespace lanternfold {

class FaceButton final : public Gtk::Button {
 public:
  /// `style` takes a theme's paddings and borders away.
  explicit FaceButton(const Glib::RefPtr<Gtk::CssProvider>& style);

  void setFace(const CardFace& face);
  [[nodiscard]] const CardFace& face() const { return face_; }

 protected:
  bool on_draw(const Cairo::RefPtr<Cairo::Context>& context) override;
  void on_realize() override;

 private:
  void showCursor();

  CardFace face_;
};

}  // namespace lanternfold
