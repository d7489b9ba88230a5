#!/usr/bin/env perl
# Fails when a text that the window shows has no German, or has it twice. Looks at the captions of the
# controls (src/ui/model), at the words of tr(), the patterns and the places (src/ui/qt), at the lists of tabs
# and entries, at the filters of file dialogs, and at what the program puts into captions and empty
# lists while it runs.
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

my %known;     # whole texts
my %fragment;  # what stands beside the values of a text with %1 in it
my $bad = 0;
my $ts = slurp('share/translations/fsskyvault_de.ts');
while ($ts =~ m{<source>(.*?)</source>\s*<translation>(.+?)</translation>}gs) {
  my $text = $1;
  $text =~ s/&lt;/</g;
  $text =~ s/&gt;/>/g;
  $text =~ s/&amp;/&/g;
  print("\"$text\" stands twice in share/translations\n"), $bad = 1 if $known{$text}++;
  $fragment{$_} = 1 for split /%\d/, $text =~ /%\d/ ? $text : '';
}

my $literal = qr/"((?:[^"\\]|\\.)*)"/;
my $string = qr/"(?:[^"\\]|\\.)*"/;
sub check {
  my ($file, $text) = @_;
  $text =~ s/\\n/\n/g;
  $text =~ s/\\(["\\])/$1/g;
  return if $text eq '' || $text eq '-' || $text eq '...' || $known{$text};
  print "$file: \"$text\" has no German in share/translations\n";
  $bad = 1;
}

# A text that is put together: each line of it is known, or stands beside a value of one that is.
sub check_parts {
  my ($file, $code) = @_;
  $code =~ s/"\s*\n\s*"//g;
  for my $literal ($code =~ /$literal/g) {
    $literal =~ s/\\r//g;
    $literal =~ s/\\"/"/g;
    for my $line (split /\\n/, $literal) {
      check($file, $line) unless $line !~ /[A-Za-z]{2}/ || $line eq 'This ' || $fragment{$line};
    }
  }
}

for my $file (split /\n/, `find src -name '*.cpp' -o -name '*.h'`) {
  my $source = slurp($file);
  if ($file =~ m{^src/ui/model/}) {
    check($file, $1) while $source =~ /\w\{"\w+",\s*$literal/g;
    check($file, $1) while $source =~ /\{$literal, [1-9]\d*\}/g;
    check($file, $1) while $source =~ /Form\("\w+", $literal\)/g;
  }
  if ($file =~ m{^src/ui/qt/}) {
    while ($source =~ /\btr\(((?:\s*$string)+)/g) {
      check($file, join '', $1 =~ /$literal/g);
    }
  }
  my %constants = $source =~ /constexpr const char\* (\w+) =((?:\s*$string)+);/g;
  # The status line and its messages stay English.
  while ($source =~ /([\w.]+)(?:\.|->)(?:caption|emptyText|hint) =(?!=)((?:[^;"]|$string)*);/g) {
    my ($control, $code) = ($1, $2);
    $code .= $constants{$_} // '' for $code =~ /\w+/g;
    check_parts($file, $code) unless $control =~ /status$|line_$/i || $code =~ /programTitle/;
  }
  check_parts($file, $1) while $source =~ /\n\w[^\n]*(?:emptyText|noAircraft|storeTrouble|importLine|unreadable|fillEmptyTexts|stateOf\w*)\([^\n]*\{\n(.*?)\n\}/gs;
  # Folders that are none say "This" and the reason.
  if ($file =~ m{/folder_text\.cpp$}) {
    check($file, "This $1") while $source =~ /refused\($literal/g;
  }
  # Captions of boxes' own buttons.
  check($file, $1) while $source =~ /\.(?:yes|no) = $literal/g;
  check($file, $1) while $source =~ /"([^"|\\\n]+)\|\*[^"\n]*"/g;
  if ($file =~ m{^src/ui/qt/place_pictures}) {
    check($file, $1) while $source =~ /\{"\w+", $literal, "#/g;
    check($file, $1) while $source =~ /onlyFirst = $literal/g;
  }
  if ($source =~ /withValues\[\] = \{(.*?)\};/s) {
    check($file, $_) for $1 =~ /$literal/g;
  }
  check_parts($file, $1) while $source =~ /items\.insert\((.*?)\);/gs;
  while ($source =~ /(?:tabs|items) = std::vector<std::string>\{([^}]*)\}/g) {
    check($file, $_) for $1 =~ /$literal/g;
  }
}
exit $bad;
