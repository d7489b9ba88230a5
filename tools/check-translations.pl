#!/usr/bin/env perl
# Fails when a text that the window shows has no German. Looks at the captions of the controls
# (src/ui/model), at the words of tr() (src/ui/qt) and at the lists of tabs and entries.
#   tools/check-translations.pl
use strict;
use warnings;
use FindBin;
chdir "$FindBin::Bin/.." or die;

sub slurp {
  my ($file) = @_;
  open my $handle, '<', $file or die "$file: $!";
  local $/;
  return <$handle>;
}

my %known;
my $ts = slurp('share/translations/fsskyvault_de.ts');
while ($ts =~ m{<source>(.*?)</source>\s*<translation>(.+?)</translation>}gs) {
  my $text = $1;
  $text =~ s/&lt;/</g;
  $text =~ s/&gt;/>/g;
  $text =~ s/&amp;/&/g;
  $known{$text} = 1;
}

my $literal = qr/"((?:[^"\\]|\\.)*)"/;
my $bad = 0;
sub check {
  my ($file, $text) = @_;
  $text =~ s/\\n/\n/g;
  $text =~ s/\\"/"/g;
  return if $text eq '' || $text eq '-' || $text eq '...' || $known{$text};
  print "$file: \"$text\" has no German in share/translations\n";
  $bad = 1;
}

for my $file (split /\n/, `find src -name '*.cpp' -o -name '*.h'`) {
  my $source = slurp($file);
  if ($file =~ m{^src/ui/model/}) {
    check($file, $1) while $source =~ /\w\{"\w+",\s*$literal/g;
    check($file, $1) while $source =~ /\{$literal, [1-9]\d*\}/g;
    check($file, $1) while $source =~ /Form\("\w+", $literal\)/g;
  }
  if ($file =~ m{^src/ui/qt/}) {
    while ($source =~ /\btr\(((?:\s*"(?:[^"\\]|\\.)*")+)/g) {
      check($file, join '', $1 =~ /$literal/g);
    }
  }
  while ($source =~ /(?:tabs|items) = std::vector<std::string>\{([^}]*)\}/g) {
    check($file, $_) for $1 =~ /$literal/g;
  }
}
exit $bad;
